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

def addresses(field)
  field.addrs.map { |one| [one.display_name, one.address] }
end

ARGV.each do |path|
  mail = Mail.read(path)
  attachment = mail.attachments.first
  found = {
    mail: path,
    subject: attempt { mail.subject },
    to: attempt { addresses(mail[:to]) },
    cc: attempt { addresses(mail[:cc]) },
    date: attempt { mail.date.to_time.to_i },
    references: attempt { mail.references.map { |one| "<#{one}>" }.join(' ') },
    text: attempt { (mail.multipart? ? mail.parts.first : mail).decoded }
  }
  if attachment
    found[:filename] = attempt { attachment.filename }
    found[:data] = attempt { Base64.strict_encode64(attachment.decoded) }
  end
  puts JSON.generate(found)
end
