# Reads mails with Perl's Email::MIME: a line of JSON for each.
use strict;
use warnings;
use Email::MIME;
use JSON::PP;
use MIME::Base64 'encode_base64';

# What it dies of is what it reads.
sub attempt {
    my ($read) = @_;
    my $value = eval { $read->() };
    return $@ ? 'dies: ' . $@ =~ s/ at \S+ line.*//sr : $value;
}

my $json = JSON::PP->new->ascii;
for my $path (@ARGV) {
    open(my $file, '<:raw', $path) or die "$path: $!";
    my $mail = Email::MIME->new(do { local $/; <$file> });
    my @parts = $mail->subparts ? $mail->subparts : ($mail);
    my $found = {
        mail    => $path,
        subject => attempt(sub { $mail->header_str('Subject') }),
        text    => attempt(sub { $parts[0]->body_str }),
        to      => attempt(sub {
            [map { [$_->phrase, $_->address] } $mail->header_as_obj('To')->addresses];
        }),
    };
    if ($parts[1]) {
        $found->{filename} = attempt(sub { $parts[1]->filename });
        $found->{data} = attempt(sub { encode_base64($parts[1]->body, '') });
    }
    print $json->encode($found), "\n";
}
