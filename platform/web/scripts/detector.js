// Makes links from telephone numbers, mail addresses and web addresses in a page's text. Runs once, when
// the page has loaded completely. Checks at most 5000 pieces of text and makes at most 300 links; skips
// links, controls, code and text that is being edited. Each repetition in a pattern is bounded, so that
// no text makes the search slow.
(() => {
  const kTexts = 5000, kLinks = 300, kLongest = 20000, kCharacters = 300000;
  const kSkipped = 'a,area,button,code,input,label,noscript,pre,script,select,style,svg,textarea,'
    + 'title,[contenteditable]';
  const kMail = '(?<mail>\\b[\\w.+-]{1,64}@[\\w-]{1,63}(?:\\.[\\w-]{1,63}){1,6})';
  const kOther = '(?<web>\\b(?:https?:\\/\\/|www\\.)[^\\s<>"\']{3,2000})|'
    + '(?<call>(?<![\\w.\\/:-])(?:\\+\\d|\\(\\d|\\d)[\\d ().\\/-]{5,22}\\d(?![\\w\\/-]))';
  const kWithMail = new RegExp(kMail + '|' + kOther, 'gi');
  const kWithoutMail = new RegExp(kOther, 'gi');
  const isNumber = (text) => {
    const digits = text.replace(/\D/g, '');
    if (digits.length < 7 || digits.length > 15) return false;
    if (/^\d{1,4}[.\/-]\d{1,2}[.\/-]\d{1,4}(?:\D|$)/.test(text)) return false;  // a date
    if (/^\d{1,3}(?:\.\d{1,3}){3}$/.test(text)) return false;  // a host's address
    return /^[+(]/.test(text) || text.split(/[^\d]+/).length >= 3;
  };
  const addressOf = (match) => {
    const { mail, web, call } = match.groups;
    if (mail) return { text: mail, address: 'mailto:' + mail };
    if (web) {
      const text = web.replace(/[.,;:!?)\]}]+$/, '');
      return { text, address: /^http/i.test(text) ? text : 'http://' + text };
    }
    if (!isNumber(call)) return null;
    return { text: call, address: 'tel:' + call.replace(/[^\d+]/g, '') };
  };
  const detect = () => {
    const walker = document.createTreeWalker(document.body, NodeFilter.SHOW_TEXT);
    const texts = [];
    while (texts.length < kTexts && walker.nextNode()) texts.push(walker.currentNode);
    let links = 0, characters = 0;
    for (const text of texts) {
      const content = text.data;
      if (content.length < 7 || content.length > kLongest) continue;
      if (!text.parentElement || text.parentElement.closest(kSkipped)) continue;
      characters += content.length;
      if (characters > kCharacters) return;
      const pieces = document.createDocumentFragment();
      let end = 0;
      for (const match of content.matchAll(content.includes('@') ? kWithMail : kWithoutMail)) {
        const found = addressOf(match);
        if (!found || links >= kLinks) continue;
        ++links;
        const link = document.createElement('a');
        link.href = found.address;
        link.textContent = found.text;
        pieces.append(content.slice(end, match.index), link);
        end = match.index + found.text.length;
      }
      if (end === 0) continue;
      pieces.append(content.slice(end));
      text.replaceWith(pieces);
      if (links >= kLinks) return;
    }
  };
  addEventListener('load', () => setTimeout(() => { if (document.body) detect(); }, 0));
})();
