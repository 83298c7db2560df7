# The rules of SpamAssassin that mails fire: a line of path and names for each. No network is asked.
use strict;
use warnings;
use Mail::SpamAssassin;

my $assassin = Mail::SpamAssassin->new({
    local_tests_only => 1, dont_copy_prefs => 1, userprefs_filename => '/dev/null',
    userstate_dir => '/srv/spamassassin',
});
for my $path (@ARGV) {
    open(my $file, '<:raw', $path) or die "$path: $!";
    my $mail = $assassin->parse([<$file>]);
    my $status = $assassin->check($mail);
    print "$path ", $status->get_names_of_tests_hit, "\n";
    $status->finish;
    $mail->finish;
}
