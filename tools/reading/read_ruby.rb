# Reads mails with Ruby's Mail: a line of JSON for each.
require 'base64'
require 'json'
require 'mail'

# What it raises is what it reads.
def attempt
  yield
rescue StandardError => error
  "raises #{error.inspect}"
end

ARGV.each do |path|
  mail = Mail.read(path)
  attachment = mail.attachments.first
  found = {
    mail: path,
    subject: attempt { mail.subject },
    to: attempt { mail[:to].addrs.map { |to| [to.display_name, to.address] } },
    text: attempt { (mail.multipart? ? mail.parts.first : mail).decoded }
  }
  if attachment
    found[:filename] = attempt { attachment.filename }
    found[:data] = attempt { Base64.strict_encode64(attachment.decoded) }
  end
  puts JSON.generate(found)
end
