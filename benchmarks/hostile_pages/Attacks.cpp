#include "benchmarks/hostile_pages/Attacks.h"

namespace benchmarks {

const std::vector<Attack>& attacks() {
  using enum Attack::Place;
  static const std::vector<Attack> all{
      {"idle page", Ad, "<p>Nothing happens here"},

      // Pages that never end.
      {"script never answers", Script, "0"},
      {"script hangs", Script, "while (true) {}"},
      {"ad hangs at once", Ad, "<script>while (true) {}</script>"},
      {"ad hangs later", Ad, "<script>setTimeout(() => { while (true) {} }, 2000)</script>"},
      {"picture never comes", Ad, "<img src=silent>"},
      {"waits for a silent server", Ad,
       "<script>x = new XMLHttpRequest; x.open('GET', 'silent', false); x.send()</script>"},

      // Memory.
      {"arrays", Ad,
       "<script>k = []; setInterval(() => k.push(new Uint8Array(32 << 20).fill(1)), 50)</script>"},
      {"workers", Ad,
       "<script>b = new Blob(['k = []; setInterval(() => k.push(new Uint8Array(4 << 20).fill(1)),"
       " 10)']); setInterval(() => new Worker(URL.createObjectURL(b)), 50)</script>"},
      {"blobs", Ad,
       "<script>k = []; setInterval(() => k.push(new Blob([new Uint8Array(16 << 20).fill(1)])),"
       " 100)</script>"},
      {"databases", Ad,
       "<script>r = indexedDB.open('x', 1); r.onupgradeneeded = () =>"
       " r.result.createObjectStore('s', {autoIncrement: true}); r.onsuccess = () =>"
       " setInterval(() => r.result.transaction('s', 'readwrite').objectStore('s')"
       ".add(new Uint8Array(8 << 20).fill(1)), 100)</script>"},
      {"kept answers", Ad,
       "<script>caches.open('x').then(c => { n = 0; setInterval(() => c.put('/' + ++n,"
       " new Response(new Uint8Array(8 << 20).fill(1))), 100) })</script>"},
      {"canvases", Ad,
       "<script>k = []; setInterval(() => { c = document.createElement('canvas');"
       " c.width = c.height = 4096; c.getContext('2d').fillRect(0, 0, 4096, 4096); k.push(c) },"
       " 100)</script>"},
      {"frames in frames", Ad,
       "<script>setInterval(() => { f = document.createElement('iframe');"
       " f.srcdoc = '<p>x'.repeat(1000); document.body.append(f) }, 5)</script><body>"},

      // Floods of messages and navigations.
      {"messages", Ad,
       "<body><script>setInterval(() => { for (i = 0; i < 200; ++i) {"
       " f = document.createElement('iframe'); f.src = 'gmsg://x/touch?tx=1&ty=2&td=3';"
       " document.body.append(f) } }, 20)</script>"},
      {"messages of 2 MB", Ad,
       "<body><script>m = 'gmsg://x/settings?x=' + 'x'.repeat(2 << 20); setInterval(() => {"
       " f = document.createElement('iframe'); f.src = m; document.body.append(f) }, "
       "100)</script>"},
      {"addresses of 10 MB", Ad,
       "<script>m = 'http://x.invalid/' + 'x'.repeat(10 << 20); setInterval(() => {"
       " location = m }, 500)</script>"},
      {"destinations", Ad,
       "<body><script>setInterval(() => { for (i = 0; i < 50; ++i) {"
       " f = document.createElement('iframe'); f.src = "
       "'gmsg://x/open?a=browser&u=http://x.invalid/';"
       " document.body.append(f) } }, 20)</script>"},
      {"other programs", Ad,
       "<body><script>setInterval(() => { for (s of ['tel:1', 'sms:2', 'ssh://x', 'mailto:a@b.c'])"
       " { f = document.createElement('iframe'); f.src = s; document.body.append(f) } }, 50)"
       "</script>"},
      {"new windows", Ad, "<script>setInterval(() => { open('#step'); open('/x') }, 5)</script>"},
      {"steps", Ad, "<script>n = 0; setInterval(() => { location.hash = ++n }, 5)</script>"},
      {"reloads", Ad, "<script>onload = () => location.reload()</script>"},

      // What asks for the person's attention.
      {"dialogs", Ad, "<script>while (true) alert(1)</script>"},
      {"titles", Ad,
       "<script>t = 'x'.repeat(1 << 20); n = 0; setInterval(() => { document.title = t + ++n }, 5)"
       "</script>"},
      {"printing", Ad, "<script>setInterval(() => print(), 5)</script>"},
  };
  return all;
}

}  // namespace benchmarks
