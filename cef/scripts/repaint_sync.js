new Promise(r => requestAnimationFrame(() => requestAnimationFrame(() => r(true))))
