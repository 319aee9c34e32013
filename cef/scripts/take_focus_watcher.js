// After Tab's own work: when the focus went to nothing in the page, it left
// the page. A full Chromium may already have cycled it back to the page's
// first element by then, so the focusout on the way counts too.
(() => {
  if (window !== window.top) return;
  document.addEventListener('keydown', (event) => {
    if (event.key !== 'Tab' || event.defaultPrevented) return;
    const from = document.activeElement;
    let leftForNothing = false;
    const watch = (out) => { if (out.relatedTarget === null) leftForNothing = true; };
    document.addEventListener('focusout', watch, true);
    setTimeout(() => {
      document.removeEventListener('focusout', watch, true);
      const now = document.activeElement;
      const intoFrame = now && (now.tagName === 'IFRAME' || now.tagName === 'FRAME');
      const onNothing = (!now || now === document.body) && now !== from;
      if (!intoFrame && (onNothing || (leftForNothing && from !== document.body)))
        __BINDING__(event.shiftKey ? '0' : '1');
    }, 0);
  }, true);
})();
