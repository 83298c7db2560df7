// Reads mails with mailparser: a line of JSON for each.
const { readFileSync } = require('node:fs');
const { simpleParser } = require('mailparser');

async function read(path) {
  // What it throws is what it reads.
  const mail = await simpleParser(readFileSync(path)).catch((error) => ({
    subject: `throws ${error}`,
  }));
  const found = {
    mail: path,
    subject: mail.subject ?? null,
    to: mail.to?.value.map(({ name, address }) => [name, address]) ?? null,
    text: mail.text ?? null,
  };
  if (mail.attachments?.length) {
    const [attachment] = mail.attachments;
    found.filename = attachment.filename ?? null;
    found.data = attachment.content.toString('base64');
  }
  console.log(JSON.stringify(found));
}

(async () => {
  for (const path of process.argv.slice(2)) await read(path);
})();
