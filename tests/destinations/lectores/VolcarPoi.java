// SPDX-License-Identifier: MIT
// What Apache POI sees in workbooks: tab-separated lines, files apart by "FICHERO".
import java.io.FileDescriptor;
import java.io.FileInputStream;
import java.io.FileOutputStream;
import java.io.PrintStream;
import java.util.Locale;
import org.apache.poi.hssf.usermodel.HSSFName;
import org.apache.poi.hssf.usermodel.HSSFSheet;
import org.apache.poi.hssf.usermodel.HSSFWorkbook;
import org.apache.poi.ss.usermodel.Cell;
import org.apache.poi.ss.usermodel.CellType;
import org.apache.poi.ss.usermodel.FormulaError;
import org.apache.poi.ss.usermodel.Row;

public class VolcarPoi {
    static String valor(Cell celda, CellType tipo) {
        switch (tipo) {
            case NUMERIC: return String.format(Locale.ROOT, "%.15g", celda.getNumericCellValue());
            case STRING: return celda.getRichStringCellValue().getString().replace("\n", "\\n");
            case BOOLEAN: return celda.getBooleanCellValue() ? "TRUE" : "FALSE";
            case ERROR: return FormulaError.forInt(celda.getErrorCellValue()).getString();
            default: return "";
        }
    }

    static void volcarCelda(PrintStream salida, String hoja, Cell celda) {
        boolean formula = celda.getCellType() == CellType.FORMULA;
        CellType tipo = formula ? celda.getCachedFormulaResultType() : celda.getCellType();
        String texto = valor(celda, tipo);
        if (texto.isEmpty() && !formula) return;
        salida.println("CELDA\t" + hoja + "\t" + celda.getRowIndex() + "\t" + celda.getColumnIndex()
            + "\t" + texto + "\t" + celda.getCellStyle().getDataFormatString()
            + "\t" + (formula ? "=" + celda.getCellFormula() : ""));
    }

    static void volcar(PrintStream salida, String ruta) throws Exception {
        try (HSSFWorkbook libro = new HSSFWorkbook(new FileInputStream(ruta))) {
            for (int i = 0; i < libro.getNumberOfSheets(); i++) {
                HSSFSheet hoja = libro.getSheetAt(i);
                for (Row fila : hoja) for (Cell celda : fila) volcarCelda(salida, hoja.getSheetName(), celda);
                for (Object zona : hoja.getMergedRegions()) {
                    salida.println("COMBINADA\t" + hoja.getSheetName() + "\t" + zona);
                }
            }
            for (HSSFName nombre : libro.getAllNames()) {
                String formula;
                try {
                    formula = nombre.getRefersToFormula();
                } catch (RuntimeException error) {
                    formula = "?";
                }
                salida.println("NOMBRE\t" + nombre.getSheetIndex() + "\t" + nombre.getNameName() + "\t" + formula);
            }
        }
    }

    public static void main(String[] rutas) throws Exception {
        PrintStream salida = new PrintStream(new FileOutputStream(FileDescriptor.out), false, "UTF-8");
        for (String ruta : rutas) {
            salida.println("FICHERO");
            try {
                volcar(salida, ruta);
            } catch (Exception error) {
                salida.println("ERROR\t" + error);
            }
        }
        salida.flush();
    }
}
