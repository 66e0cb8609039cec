#!/usr/bin/env bash
# Checks the documents, and the texts and comments of the sources, for words that a native reader of
# the field would not use, and says what to write instead. Code may use any name.
set -euo pipefail
cd "$(dirname "$0")/.."

# What is allowed nevertheless: a file, a part of the line, and why.
allowed='
'

git ls-files -z -- README.md CHANGELOG.md 'docs/*.md' src runner webreport tests examples benchmarks fuzz \
        cmake scripts CMakeLists.txt CMakePresets.json |
    grep -zE '(\.(md|h|cpp|js|mjs|ts|html|css|cmake|txt|sh|py)|CMakePresets.json)$' |
    grep -zxvF scripts/check-words.sh |
    ALLOWED="$allowed" xargs -0 perl -e '
use strict;
use warnings;

my @unwanted = (
    [qr/\bbehind\b/i, "after, beyond"],
    [qr/\bin front\b/i, "before"],
    [qr/\banew\b/i, "again"],
    [qr/\b(?:is|are|was|were|has|have|be|been) gone\b/i, "no longer exists"],
    [qr/\b(?:stands?|stood)(?:[.,;:]| (?!for\b))/i, "is, are"],
    [qr/\b(?:lies?|lay|lying)\b(?! (?:to|out)\b)/i, "is, are"],
    [qr/\btold\b/i, "reported, said"],
    [qr/\btells?\b(?!.* apart\b)/i, "reports, says"],
    [qr/\bany more\b/i, "no longer"],
    [qr/\b(?:(?:is|are) running|exists?) already\b/i, "is already running, already exists"],
    [qr/\bspecs?\b/i, "leave it out"],
    [qr/(?<![%\d])\b1 (?:test cases|errors|warnings|runs)\b/i, "the singular"],
);

my @allowed = map { [split / \| /] } grep { /\S/ } split /\n/, $ENV{ALLOWED};

sub is_allowed {
    my ($file, $text) = @_;
    return grep { $file eq $_->[0] && index($text, $_->[1]) >= 0 } @allowed;
}

# The texts and comments of a line of code, and the words of the name of a test. The hash begins a
# comment in scripts.
sub prose {
    my ($line, $in_comment, $has_hash) = @_;
    my $prose = $line =~ /^TEST\w*\(\w+, (\w+)/ ? $1 =~ s/\B(?=[A-Z])/ /gr : "";
    while (length $line) {
        if ($$in_comment) {
            $line =~ s/^(.*?)(\*\/|$)//;
            $prose .= " $1";
            $$in_comment = $2 eq "";
            last if $$in_comment;
        } elsif ($line =~ s/^("(?:[^"\\]|\\.)*"|\x27(?:[^\x27\\]|\\.){2,}\x27|`[^`]*`)//) {
            $prose .= " $1";
        } elsif ($has_hash ? $line =~ s/^#(.*)// : $line =~ s/^\/\/(.*)//) {
            $prose .= " $1";
        } elsif (!$has_hash && $line =~ s/^\/\*//) {
            $$in_comment = 1;
        } else {
            $line =~ s/^.//;
        }
    }
    return $prose;
}

my $found = 0;
for my $file (@ARGV) {
    open my $in, "<", $file or die "$file: $!\n";
    my $in_comment = 0;
    my $has_hash = $file =~ /\.(?:cmake|txt|sh|py)$/;
    while (my $line = <$in>) {
        chomp $line;
        my $text = $file =~ /\.(?:md|html)$/ ? $line : prose($line, \$in_comment, $has_hash);
        for my $rule (@unwanted) {
            next unless $text =~ $rule->[0];
            next if is_allowed($file, $text);
            print "$file:$.: \"$&\": write $rule->[1]\n";
            $found = 1;
        }
    }
}
exit $found;
'
