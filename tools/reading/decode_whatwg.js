// Decodes lines of a charset and bytes in hexadecimal as browsers do, with tables of its own: those of
// Node.js are ICU's. A line of JSON for each, null for a failure.
const { readFileSync } = require('node:fs');
const { TextDecoder } = require('text-encoding');

const lines = readFileSync(0, 'latin1').trimEnd().split('\n');
const decoded = lines.map((line) => {
  const [charset, bytes] = line.split(' ');
  try {
    const decoder = new TextDecoder(charset, { fatal: true, ignoreBOM: true });
    return JSON.stringify(decoder.decode(Buffer.from(bytes, 'hex')));
  } catch {
    return 'null';
  }
});
console.log(decoded.join('\n'));
