#!/usr/bin/env bash
# Checks that no two files need each other: what a header and the source of its name include must not
# lead back to them. The function or type that closes a cycle is in the wrong file.
set -euo pipefail
cd "$(dirname "$0")/.."

git ls-files -z -- 'src/*.h' 'src/*.cpp' 'runner/*.h' 'runner/*.cpp' | xargs -0 perl -e '
use strict;
use warnings;

# The log and the base of its formats are written with helpers that know their nested types.
my %free = map { $_ => 1 } qw(src/test/testresult.cpp src/test/testreportgenerator.cpp);

sub unit { return $_[0] =~ s/\.\w+$//r; }

my %units = map { unit($_) => 1 } @ARGV;
my %needs;
for my $file (grep { !$free{$_} } @ARGV) {
    open my $in, "<", $file or die "$file: $!\n";
    my ($folder) = $file =~ /^(.*\/)/;
    while (my $line = <$in>) {
        next unless $line =~ /^\s*#\s*include\s+"([^"]+)\.h"/;
        my ($found) = grep { $units{$_} } "src/$1", "$folder$1", "runner/$1";
        $needs{unit($file)}{$found} = 1 if $found && $found ne unit($file);
    }
}

# The shortest way from a unit back to it.
sub cycle {
    my ($start) = @_;
    my @ways = ([$start]);
    my %seen;
    while (my $way = shift @ways) {
        for my $next (sort keys %{$needs{$way->[-1]}}) {
            return @$way if $next eq $start;
            push @ways, [@$way, $next] unless $seen{$next}++;
        }
    }
    return;
}

my %in_cycle;
my $found = 0;
for my $unit (sort keys %units) {
    my @cycle = $in_cycle{$unit} ? () : cycle($unit) or next;
    @in_cycle{@cycle} = (1) x @cycle;
    print join(" -> ", @cycle, $unit), "\n";
    $found = 1;
}
exit $found;
'
