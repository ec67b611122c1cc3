// SPDX-License-Identifier: MIT
#include "download/SalidaHoja.h"

#include <limits>
#include <utility>
#include <variant>

#include "config/Codificacion.h"
#include "config/UtilTexto.h"
#include "download/BusquedaEnHoja.h"
#include "download/CamposPesada.h"
#include "download/MatriculaEnHoja.h"
#include "platform/Ficheros.h"

namespace bn {

namespace {

// The user defines it in the workbook, to say where to write; the program only reads it.
constexpr const char* kNombreUltimaFila = "bnUltima";
constexpr int32_t kUltimaFila = std::numeric_limits<int16_t>::max();
constexpr int32_t kPocasFilas = 500;

[[noreturn]] void hojaLlena() {
    throw HojaLlena(
        "La hoja de cálculo no admite más pesadas: la última fila que se puede escribir es la " +
        std::to_string(kUltimaFila));
}

std::string noEsFila(const std::string& valor) {
    return "El nombre \"" + std::string(kNombreUltimaFila) + "\" del libro vale \"" + valor +
           "\", que no es una fila: ponga un número de 1 a " + std::to_string(kUltimaFila) +
           ", o quítelo";
}

bool estaVacia(const Variante& celda) {
    if (const auto* texto = std::get_if<std::string>(&celda)) return texto->empty();
    return std::holds_alternative<std::monostate>(celda);
}

/// The spreadsheet takes UTF-8; the plate came in the line's own bytes.
Variante valorParaHoja(const pesaDX5& pesada, int32_t campo) {
    Variante valor = valorDeCampo(pesada, campo);
    if (auto* texto = std::get_if<std::string>(&valor)) *texto = cp1252AUtf8(*texto);
    return valor;
}

FilaEsperada filaDe(const pesaDX5& pesada) {
    FilaEsperada fila;
    for (int32_t campo = 0; campo < kCamposPesada; ++campo) {
        fila.valores[static_cast<std::size_t>(campo)] = valorParaHoja(pesada, campo);
    }
    fila.conAlbaran = pesada.Albaran() != 0;
    return fila;
}

/// Where the folder is away (a drive pulled out) a new workbook must not even be begun: its first
/// row is no row of the one that may come back. An address is no path.
void exigirCarpeta(Disco& disco, const std::filesystem::path& libro) {
    if (!libro.is_absolute() || ficheros::esCarpeta(disco, libro.parent_path())) return;
    throw ErrorFichero(libro, "no existe", ErrorFichero::Causa::kNoExiste);
}

}  // namespace

SalidaHoja::SalidaHoja(Plataforma& plataforma, const Setup& cfg, XCel& hoja)
    : plataforma_(plataforma), cfg_(cfg), hoja_(hoja) {}

Comienzo SalidaHoja::aqui(int32_t fila) const {
    Comienzo comienzo;
    comienzo.fichero = cfg_.LibroExcel();
    comienzo.hoja = cfg_.HojaExcel();
    comienzo.lugar = static_cast<std::uint64_t>(fila);
    for (int32_t campo = 0; campo < kCamposPesada; ++campo) {
        comienzo.columnas[static_cast<std::size_t>(campo)] = cfg_.ColumnaExcel(campo);
    }
    return comienzo;
}

void SalidaHoja::resolver(LoteEnCurso& lote) {
    const Parte& parte = lote.lote.nota().parte(Destino::kHoja);
    const bool sinSaber = lote.lote.nota().desconocida() && parte.llegadas.vacio();
    if (!parte.empezada && !sinSaber) return;
    const Comienzo comienzo = parte.empezada ? *parte.empezada : aqui(1);
    const auto porLlegar = lote.porLlegar(Destino::kHoja);
    const auto halladas = buscar(lote, comienzo, porLlegar);
    // With nothing there the part stays begun, and is begun again at the same place or another.
    if (!halladas || halladas->vacio()) return;
    // Whoever saved it may not have lived to see it on the disk itself.
    ficheros::volcar(plataforma_.disco(), ficheros::aRuta(comienzo.fichero));
    Tramos llegadas;
    for (std::size_t i = 0; i < porLlegar.size(); ++i) {
        if (halladas->contiene(i)) llegadas.anadir(porLlegar[i], porLlegar[i] + 1);
    }
    lote.lote.nota().apuntar({apunte::Llega{Destino::kHoja, llegadas}});
}

/// Positions in porLlegar of the rows that stand in the sheet; nothing when what was begun cannot
/// be looked at any more.
std::optional<Tramos> SalidaHoja::buscar(const LoteEnCurso& lote, const Comienzo& comienzo,
                                         const std::vector<std::size_t>& porLlegar) {
    const auto libro = ficheros::aRuta(comienzo.fichero);
    if (!hoja_.AbrirParaLeer(comienzo.fichero, {})) {
        const bool esElDeAhora = comienzo.fichero == cfg_.LibroExcel();
        // Missing only when the disk says so: what it cannot show must not be written again.
        const bool falta = !esElDeAhora || !ficheros::largo(plataforma_.disco(), libro);
        if (hoja_.arranco() && falta) return std::nullopt;
        throw excel::ErrorExcel(hoja_.motivo());
    }
    std::vector<FilaEsperada> filas;
    pesaDX5 pesada(plataforma_);
    for (const std::size_t ordinal : porLlegar) {
        pesada.DatosValidos(lote.pesadas[ordinal], lote.lote.nota().reloj());
        filas.push_back(filaDe(pesada));
    }
    std::optional<Tramos> halladas;
    try {
        if (hoja_.EstablecerHoja(comienzo.hoja)) halladas = buscarEnHoja(hoja_, comienzo, filas);
    } catch (const std::exception&) {
        cerrarSinMas();
        throw;
    }
    cerrarSinMas();
    return halladas;
}

/// What has been seen holds, even if the application does not quit.
void SalidaHoja::cerrarSinMas() {
    try {
        hoja_.Cerrar();
    } catch (const std::exception&) {
        return;  // it has been let go all the same
    }
}

void SalidaHoja::abrir() {
    // A save that was killed has left its temporary beside the workbook.
    ficheros::borrarTemporales(plataforma_.disco(),
                               ficheros::aRuta(cfg_.LibroExcel()).parent_path());
    hoja_.AbrirParaEscribir(cfg_.LibroExcel(), cfg_.HojaExcel(), cfg_.UsoExcel());
    abierta_ = true;
    if (hoja_.enLugarDe() == EnLugarDe::kSano) throw excel::ErrorExcel(hoja_.motivo());
    if (!hoja_.enHojaPedida() && !hoja_.motivo().empty()) throw excel::ErrorExcel(hoja_.motivo());
    if (hoja_.esNuevo()) exigirCarpeta(plataforma_.disco(), ficheros::aRuta(cfg_.LibroExcel()));
    buscarPrimeraFila();
}

void SalidaHoja::buscarPrimeraFila() {
    const Variante marcada = hoja_.ValorNombre(kNombreUltimaFila);
    if (const auto* texto = std::get_if<std::string>(&marcada)) {
        const double fila = utiltexto::redondearPar(utiltexto::numeroInicial(*texto));
        if (!(fila >= std::numeric_limits<int16_t>::min() && fila <= kUltimaFila)) {
            throw std::overflow_error(noEsFila(*texto));
        }
        fila_ = static_cast<int32_t>(fila);
        nombrada_ = *texto;
        return;
    }
    for (fila_ = 1; fila_ <= kUltimaFila && !filaVacia();) ++fila_;
}

/// Only the columns of the eight fields count: the others may hold anything.
bool SalidaHoja::filaVacia() {
    for (int32_t campo = 0; campo < kCamposPesada; ++campo) {
        const int16_t columna = cfg_.ColumnaExcel(campo);
        if (columna > 0 && !estaVacia(hoja_.Celda(static_cast<int16_t>(fila_), columna))) {
            return false;
        }
    }
    return true;
}

void SalidaHoja::empezar(LoteEnCurso& lote) {
    if (taparia(lote)) fila_ = kUltimaFila + 1;  // as full as it was
    escritos_.push_back({&lote, fila_, {}});
}

/// A row that the workbook names is used as it stands; but the rest of a batch that has filled the
/// sheet from there must not go over its own beginning.
bool SalidaHoja::taparia(const LoteEnCurso& lote) const {
    const Parte& parte = lote.lote.nota().parte(Destino::kHoja);
    if (nombrada_.empty() || !parte.anterior) return false;
    const Comienzo& antes = *parte.anterior;
    const auto fin = static_cast<int64_t>(antes.lugar + parte.llegadas.cuantos());
    return antes.fichero == cfg_.LibroExcel() && antes.hoja == cfg_.HojaExcel() &&
           fin > kUltimaFila && fila_ >= static_cast<int64_t>(antes.lugar) && fila_ < fin;
}

/// A row that does not fit is an error only when there is a weighing for it.
void SalidaHoja::escribir(const pesaDX5& pesada, std::size_t ordinal) {
    if (fila_ > kUltimaFila) {
        llena_ = true;
        hojaLlena();
    }
    try {
        escribirFila(pesada);
    } catch (const excel::ErrorExcel&) {
        if (fila_ < 1) throw excel::ErrorExcel(noEsFila(nombrada_));
        throw;
    }
    ++fila_;
    escritos_.back().pesadas.anadir(ordinal, ordinal + 1);
}

void SalidaHoja::escribirFila(const pesaDX5& pesada) {
    for (int32_t campo = 0; campo < kCamposPesada; ++campo) {
        const int16_t columna = cfg_.ColumnaExcel(campo);
        if (columna <= 0) continue;
        Variante valor = valorParaHoja(pesada, campo);
        if (auto* texto = std::get_if<std::string>(&valor)) *texto = matriculaEnHoja(*texto);
        hoja_.Celda(static_cast<int16_t>(fila_), columna, valor);
    }
}

/// Where each batch begins is noted before the workbook is saved, and that it is there afterwards.
void SalidaHoja::guardar() {
    if (!elegida()) return hoja_.Cerrar();  // switched off meanwhile: they wait, as the others do
    const auto libro = ficheros::aRuta(cfg_.LibroExcel());
    for (const Escrito& escrito : escritos_) {
        Comienzo comienzo = aqui(escrito.fila);
        Nota& nota = escrito.lote->lote.nota();
        if (nota.parte(Destino::kHoja).empezada == comienzo) continue;
        nota.apuntar({apunte::Empieza{Destino::kHoja, std::move(comienzo)}});
    }
    const bool sustituye = hoja_.enLugarDe() == EnLugarDe::kDanado;
    hoja_.Guardar({});
    abierta_ = false;
    // The application saves into the system's cache.
    ficheros::volcar(plataforma_.disco(), libro);
    if (sustituye && !hoja_.conservado().empty()) {
        avisar("El libro " + cfg_.LibroExcel() +
               " estaba dañado o no era un libro de Excel. Se ha empezado uno nuevo, y el anterior "
               "se conserva como " +
               ficheros::aTexto(hoja_.conservado()) + ".");
    }
    for (const Escrito& escrito : escritos_) {
        Nota& nota = escrito.lote->lote.nota();
        const bool todas =
            escrito.pesadas.cuantos() == escrito.lote->porLlegar(Destino::kHoja).size();
        if (todas) {
            nota.apuntar({apunte::Hecho{Destino::kHoja}});
        } else {
            nota.apuntar({apunte::Llega{Destino::kHoja, escrito.pesadas}});
        }
    }
    escritos_.clear();
    avisarDelFinal();
}

void SalidaHoja::avisarDelFinal() {
    const int32_t quedan = kUltimaFila + 1 - fila_;
    if (quedan >= kPocasFilas || llena_) return;  // that it is full is told as a failure
    avisar("En la hoja «" + cfg_.HojaExcel() + "» quedan " + std::to_string(quedan) +
           " filas libres. Prepare otra hoja u otro libro.");
}

/// A full sheet keeps the rows that fit; any other workbook is left as it was.
void SalidaHoja::abandonar() {
    const bool estabaAbierta = std::exchange(abierta_, false);
    try {
        if (estabaAbierta && llena_) guardar();
    } catch (const std::exception&) {
        llena_ = false;  // what arrived, if anything did, is looked up the next time
    }
    if (estabaAbierta) cerrarSinMas();
    escritos_.clear();
}

}  // namespace bn
