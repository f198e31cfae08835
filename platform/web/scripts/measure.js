// Reports when the document is parsed, when it is loaded, and when the viewport changes: the viewport's
// width, and the width that the page needs or states beyond it, or 0.
(() => {
  const tell = () => {
    const root = document.documentElement;
    if (!root) return;
    const meta = document.querySelector('meta[name="viewport" i]');
    const stated = /(?:^|[\s,;])width\s*=\s*(\d{3,5})(?:\D|$)/.exec(meta ? meta.content : '');
    const body = document.body ? document.body.scrollWidth : 0;
    const taken = Math.max(root.scrollWidth, body);
    const width = Math.max(taken > innerWidth ? taken : 0, stated ? Number(stated[1]) : 0);
    webkit.messageHandlers.pageWidth.postMessage([innerWidth, width]);
  };
  tell();
  addEventListener('load', () => setTimeout(tell, 0));
  addEventListener('resize', tell);
})();
