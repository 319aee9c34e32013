// Told after the event's dispatch, when every listener of the page has
// had its say.
(() => {
  if (window !== window.top) return;
  const send = __BINDING__;
  addEventListener('contextmenu', (event) => setTimeout(() => {
    if (!event.defaultPrevented)
      send(JSON.stringify({x: event.clientX, y: event.clientY}));
  }, 0), true);
})();
