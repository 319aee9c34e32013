(() => {
  const send = __BINDING__;
  window.print = function print() { send(''); };
})();
