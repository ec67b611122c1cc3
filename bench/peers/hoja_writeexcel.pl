#!/usr/bin/perl
# SPDX-License-Identifier: MIT
# The same weighings into a new workbook, with Spreadsheet::WriteExcel.
# Arguments: nuevo DATOS - LIBRO VECES.
use strict;
use warnings;
use Spreadsheet::WriteExcel;
use Time::HiRes qw(time);

my (undef, $datos, undef, $salida, $veces) = @ARGV;
open my $fichero, '<', $datos or die "$datos: $!";
my @filas = map { chomp; [split /\t/] } <$fichero>;
close $fichero;

for (1 .. $veces) {
    my $inicio = time;
    my $libro = Spreadsheet::WriteExcel->new($salida) or die "$salida: $!";
    my $hoja  = $libro->add_worksheet('Pesadas');
    my $fecha = $libro->add_format(num_format => 'dd/mm/yyyy hh:mm');
    my $numero = 0;
    for my $campos (@filas) {
        $hoja->write_number($numero, 0, $campos->[0], $fecha);
        $hoja->write_string($numero, 1, $campos->[1]);
        $hoja->write_number($numero, $_, $campos->[$_]) for 2 .. 7;
        $numero++;
    }
    $libro->close or die "$salida: $!";
    printf "%.6f\n", time - $inicio;
}
