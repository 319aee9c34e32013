// After the page's own listeners: a dragover they did not cancel drops
// nothing.
(() => {
  if (window !== window.top) return;
  const send = __BINDING__;
  let last = '';
  const tell = (event) => setTimeout(() => {
    const effect = event.defaultPrevented && event.dataTransfer
        ? event.dataTransfer.dropEffect : 'none';
    if (effect !== last) { last = effect; send(effect); }
  }, 0);
  addEventListener('dragenter', tell, true);
  addEventListener('dragover', tell, true);
  addEventListener('drop', () => { last = ''; }, true);
})();
