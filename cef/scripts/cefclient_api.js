(() => {
  if (typeof window.cefclient === 'function') return;
  const pending = new Map();
  let next = 1;
  window.cefclient = (method, ...args) => new Promise((resolve) => {
    const id = next++;
    pending.set(id, resolve);
    // Looked up at each call: the binding may come after this script.
    window.__BINDING__(JSON.stringify({method: String(method), args, id}));
  });
  window.__BINDING__Answer = (id, value) => {
    const resolve = pending.get(id);
    if (resolve) { pending.delete(id); resolve(value); }
  };
})();
