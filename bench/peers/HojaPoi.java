// SPDX-License-Identifier: MIT
import java.io.FileInputStream;
import java.io.FileOutputStream;
import java.io.InputStream;
import java.io.OutputStream;
import java.nio.file.Files;
import java.nio.file.Path;
import java.nio.file.Paths;
import java.nio.file.StandardCopyOption;
import java.util.ArrayList;
import java.util.List;
import java.util.Locale;
import org.apache.poi.hssf.usermodel.HSSFWorkbook;
import org.apache.poi.ss.usermodel.Cell;
import org.apache.poi.ss.usermodel.CellStyle;
import org.apache.poi.ss.usermodel.CellType;
import org.apache.poi.ss.usermodel.Row;
import org.apache.poi.ss.usermodel.Sheet;

/** The same weighings with Apache POI. Arguments: nuevo|anexar DATOS BASE LIBRO VECES. */
public final class HojaPoi {
    private static final int CAMPOS = 8;

    private static boolean vacia(Row fila) {
        if (fila == null) return true;
        for (int columna = 0; columna < CAMPOS; ++columna) {
            Cell celda = fila.getCell(columna);
            if (celda != null && celda.getCellType() != CellType.BLANK) return false;
        }
        return true;
    }

    private static void anadir(HSSFWorkbook libro, Sheet hoja, List<String[]> filas) {
        int numero = 0;
        while (!vacia(hoja.getRow(numero))) ++numero;
        CellStyle fecha = libro.createCellStyle();
        fecha.setDataFormat(libro.createDataFormat().getFormat("dd/mm/yyyy hh:mm"));
        for (String[] campos : filas) {
            Row fila = hoja.createRow(numero++);
            Cell primera = fila.createCell(0);
            primera.setCellValue(Double.parseDouble(campos[0]));
            primera.setCellStyle(fecha);
            fila.createCell(1).setCellValue(campos[1]);
            for (int columna = 2; columna < CAMPOS; ++columna) {
                fila.createCell(columna).setCellValue(Double.parseDouble(campos[columna]));
            }
        }
    }

    private static void guardar(HSSFWorkbook libro, Path salida) throws Exception {
        try (OutputStream fichero = new FileOutputStream(salida.toFile())) {
            libro.write(fichero);
        }
    }

    private static void nuevo(List<String[]> filas, Path salida) throws Exception {
        try (HSSFWorkbook libro = new HSSFWorkbook()) {
            anadir(libro, libro.createSheet("Pesadas"), filas);
            guardar(libro, salida);
        }
    }

    private static void anexar(List<String[]> filas, Path salida) throws Exception {
        try (InputStream fichero = new FileInputStream(salida.toFile());
                HSSFWorkbook libro = new HSSFWorkbook(fichero)) {
            anadir(libro, libro.getSheet("Pesadas"), filas);
            guardar(libro, salida);
        }
    }

    public static void main(String[] a) throws Exception {
        List<String[]> filas = new ArrayList<>();
        for (String linea : Files.readAllLines(Paths.get(a[1]))) filas.add(linea.split("\t"));
        Path salida = Paths.get(a[3]);
        for (int vez = 0; vez < Integer.parseInt(a[4]); ++vez) {
            if (a[0].equals("anexar")) {
                Files.copy(Paths.get(a[2]), salida, StandardCopyOption.REPLACE_EXISTING);
            }
            long inicio = System.nanoTime();
            if (a[0].equals("anexar")) {
                anexar(filas, salida);
            } else {
                nuevo(filas, salida);
            }
            System.out.printf(Locale.ROOT, "%.6f%n", (System.nanoTime() - inicio) / 1e9);
        }
    }
}
