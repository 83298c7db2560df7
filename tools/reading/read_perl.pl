# Reads mails with Perl's Email::MIME: a line of JSON for each.
use strict;
use warnings;
use Email::MIME;
use Encode 'decode';
use JSON::PP;
use MIME::Base64 'encode_base64';

# What it dies of is what it reads.
sub attempt {
    my ($read) = @_;
    my $value = eval { $read->() };
    return $@ ? 'dies: ' . $@ =~ s/ at \S+ line.*//sr : $value;
}

sub addresses {
    my ($mail, $field) = @_;
    return [map { [$_->phrase, decode('UTF-8', $_->address)] } $mail->header_as_obj($field)->addresses];
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
        to      => attempt(sub { addresses($mail, 'To') }),
        cc      => attempt(sub { addresses($mail, 'Cc') }),
        references => attempt(sub { $mail->header_str('References') }),
    };
    if ($parts[1]) {
        $found->{filename} = attempt(sub { $parts[1]->filename });
        $found->{data} = attempt(sub { encode_base64($parts[1]->body, '') });
    }
    print $json->encode($found), "\n";
}
