// Compiles each page script given as a classic script, as V8 does in a page,
// and fails on the first syntax error.
'use strict';
const fs = require('fs');
const vm = require('vm');

const files = process.argv.slice(2);
if (files.length === 0) {
  console.error('no scripts given');
  process.exit(2);
}
let failed = 0;
for (const file of files) {
  try {
    new vm.Script(fs.readFileSync(file, 'utf8'), {filename: file});
  } catch (error) {
    console.error(`${file}: ${error.stack}`);
    ++failed;
  }
}
console.log(`${files.length - failed} of ${files.length} page scripts compile`);
process.exit(failed ? 1 : 0);
