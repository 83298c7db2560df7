<?php
// Decodes the subjects of mails with PHP, by iconv or by mbstring: a line of JSON for each.
// usage: read_php.php FUNCTION MAIL...
mb_internal_encoding('UTF-8');
[, $function] = $argv;
foreach (array_slice($argv, 2) as $path) {
    // The field as it stands, folded, without the line break at its end.
    preg_match('/^Subject: (.*?)\r\n(?![ \t])/ms', file_get_contents($path), $field);
    $subject = $function === 'iconv_mime_decode'
        ? iconv_mime_decode($field[1], 0, 'UTF-8')
        : mb_decode_mimeheader($field[1]);
    echo json_encode(['mail' => $path, 'subject' => $subject], JSON_INVALID_UTF8_SUBSTITUTE), "\n";
}
