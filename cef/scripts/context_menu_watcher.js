// Told after the event's dispatch, when every listener of the page has
// had its say. With a full Chromium the engine cancels the event itself
// (see native_menu_blocker.js), which keeps what the page decided.
(() => {
  if (window !== window.top) return;
  const send = __BINDING__;
  addEventListener('contextmenu', (event) => setTimeout(() => {
    const cancelled = 'broviaPagePrevented' in event
        ? event.broviaPagePrevented : event.defaultPrevented;
    if (!cancelled)
      send(JSON.stringify({x: event.clientX, y: event.clientY}));
  }, 0), true);
})();
