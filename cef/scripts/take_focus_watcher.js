// After Tab's own work: when nothing in the page holds the focus any more,
// it left the page.
(() => {
  if (window !== window.top) return;
  document.addEventListener('keydown', (event) => {
    if (event.key !== 'Tab' || event.defaultPrevented) return;
    const from = document.activeElement;
    setTimeout(() => {
      const now = document.activeElement;
      if ((!now || now === document.body) && now !== from)
        __BINDING__(event.shiftKey ? '0' : '1');
    }, 0);
  }, true);
})();
