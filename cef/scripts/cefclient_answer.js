(id, [value]) => window.__BINDING__Answer && window.__BINDING__Answer(id, value)
