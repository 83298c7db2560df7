// Reads mails with a package from npm: a line of JSON for each.
// usage: read_npm.js PACKAGE MAIL...
const { readFileSync } = require('node:fs');

const [name, ...paths] = process.argv.slice(2);
const library = require(name);
const parse = library.simpleParser ?? library.parse;

const addresses = (field) =>
  (field?.value ?? field)?.map(({ name, address }) => [name, address]) ?? null;

async function read(path) {
  // What it throws is what it reads.
  const mail = await parse(readFileSync(path)).catch((error) => ({ subject: `throws ${error}` }));
  const found = {
    mail: path,
    subject: mail.subject ?? null,
    to: addresses(mail.to),
    cc: addresses(mail.cc),
    date: Date.parse(mail.date) / 1000,
    references: [mail.references].flat().join(' '),
    text: mail.text ?? null,
  };
  if (mail.attachments?.length) {
    const [attachment] = mail.attachments;
    found.filename = attachment.filename ?? null;
    found.data = Buffer.from(attachment.content).toString('base64');
  }
  console.log(JSON.stringify(found));
}

(async () => {
  for (const path of paths) await read(path);
})();
