// SPDX-License-Identifier: MIT
#include "download/Pendientes.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <optional>
#include <set>
#include <string_view>
#include <utility>

#include "link/sacoTramas.h"
#include "platform/Ficheros.h"

namespace bn {

namespace {

constexpr std::string_view kComienzo = "bnGuardo-";
constexpr std::string_view kDeAlmacen = ".txt";
constexpr std::string_view kDeNota = ".nota";
constexpr const char* kNotaActual = "bnGuardo.nota";
// Stood beside the store of a download that had not ended, before there were notes.
constexpr const char* kMarcaAntigua = "bnGuardo.marca";
constexpr std::size_t kCifras = 6;
constexpr std::size_t kMaximoCifras = 9;

std::string nombreDe(std::uint32_t numero, std::string_view final) {
    std::string cifras = std::to_string(numero);
    cifras.insert(0, kCifras - std::min(kCifras, cifras.size()), '0');
    return std::string(kComienzo) + cifras + std::string(final);
}

/// Dated copies of earlier versions, which nobody may touch, have other names.
std::optional<std::uint32_t> numeroDe(std::string_view nombre, std::string_view final) {
    if (!nombre.starts_with(kComienzo) || !nombre.ends_with(final)) return std::nullopt;
    nombre.remove_prefix(kComienzo.size());
    if (nombre.size() < final.size() + kCifras) return std::nullopt;
    nombre.remove_suffix(final.size());
    std::uint32_t numero = 0;
    const auto [fin, error] = std::from_chars(nombre.data(), nombre.data() + nombre.size(), numero);
    const bool esNumero = error == std::errc() && fin == nombre.data() + nombre.size();
    if (!esNumero || numero == 0 || nombre.size() > kMaximoCifras) return std::nullopt;
    return numero;
}

}  // namespace

Pendientes::Pendientes(Plataforma& plataforma) : plataforma_(plataforma) {
    ficheros::borrarTemporales(plataforma.disco(), plataforma.carpetaPrograma());
    releer();
}

std::filesystem::path Pendientes::fichero(const std::string& nombre) const {
    return plataforma_.carpetaPrograma() / nombre;
}

bool Pendientes::releer() {
    try {
        const auto nombres = ficheros::listar(plataforma_.disco(), plataforma_.carpetaPrograma());
        const bool hayNota =
            std::find(nombres.begin(), nombres.end(), kNotaActual) != nombres.end();
        releerApartados(nombres, hayNota);
        releerActual(hayNota,
                     std::find(nombres.begin(), nombres.end(), kMarcaAntigua) != nombres.end());
        if (std::exchange(aCiegas_, false)) atasco_.clear();
    } catch (const ErrorFichero& error) {
        aCiegas_ = true;  // what is known of them from before holds
        atasco_ = error.what();
    }
    return !aCiegas_;
}

void Pendientes::releerApartados(const std::vector<std::string>& nombres, bool hayNota) {
    std::set<std::uint32_t> conAlmacen;
    std::set<std::uint32_t> todos;
    for (const std::string& nombre : nombres) {
        if (const auto numero = numeroDe(nombre, kDeAlmacen)) conAlmacen.insert(*numero);
        if (const auto numero = numeroDe(nombre, kDeNota)) todos.insert(*numero);
    }
    todos.insert(conAlmacen.begin(), conAlmacen.end());
    std::erase_if(apartados_, [&](const auto& uno) { return !todos.contains(uno.first); });
    for (const std::uint32_t numero : todos) {
        // The note goes first: one without its store stands for what is still under the old name.
        const bool sinMudar = !conAlmacen.contains(numero) && !hayNota && numero == *todos.rbegin();
        const auto almacen =
            sinMudar ? sacoTramas::fichero(plataforma_) : fichero(nombreDe(numero, kDeAlmacen));
        auto& lote = apartados_[numero];
        if (lote && lote->almacen() == almacen && !lote->ilegible()) continue;
        lote = std::make_unique<Lote>(plataforma_, numero, almacen,
                                      fichero(nombreDe(numero, kDeNota)));
        lote->releer();
    }
}

/// Whether the store of the current name belongs to a batch that is half put aside.
bool Pendientes::esDeApartado() const {
    return !apartados_.empty() &&
           apartados_.rbegin()->second->almacen() == sacoTramas::fichero(plataforma_);
}

void Pendientes::releerActual(bool hayNota, bool deAntes) {
    if (!hayNota && (esDeApartado() || !deAntes)) {
        actual_.reset();
        return;
    }
    actual_ = std::make_unique<Lote>(plataforma_, 0, sacoTramas::fichero(plataforma_),
                                     fichero(kNotaActual));
    actual_->releer();
}

std::vector<Lote*> Pendientes::porLlegar() const {
    std::vector<Lote*> lotes;
    for (const auto& [numero, lote] : apartados_) {
        if (!lote->llegado()) lotes.push_back(lote.get());
    }
    if (actual_ && !actual_->llegado()) lotes.push_back(actual_.get());
    return lotes;
}

std::size_t Pendientes::cuantas() const {
    std::size_t total = actual_ ? actual_->porLlegar() : 0;
    for (const auto& [numero, lote] : apartados_) total += lote->porLlegar();
    return total;
}

std::string Pendientes::copia() const {
    if (actual_) return actual_->copia();
    return apartados_.empty() ? std::string() : apartados_.rbegin()->second->copia();
}

bool Pendientes::despejar() {
    atasco_.clear();
    if (!releer()) return false;
    try {
        if (esDeApartado()) mudarAlmacen(*apartados_.rbegin()->second);
        if (actual_ && !actual_->llegado()) {
            apartar();
        } else {
            conservarCopia();
        }
        return true;
    } catch (const ErrorFichero& error) {
        atasco_ = error.what();
        return false;
    }
}

/// Whether the folder holds the file. Throws when it cannot be looked at: what is not seen must not
/// be taken for missing, or the store would be emptied over it.
bool Pendientes::hay(const std::filesystem::path& fichero) const {
    const auto nombres = ficheros::listar(plataforma_.disco(), fichero.parent_path());
    return std::find(nombres.begin(), nombres.end(), ficheros::aTexto(fichero.filename())) !=
           nombres.end();
}

/// The note first, the store then: a note without its store still tells whose the old name is.
void Pendientes::apartar() {
    if (actual_->ilegible()) throw ErrorFichero(actual_->porQueIlegible());
    const std::uint32_t numero = apartados_.empty() ? 1 : apartados_.rbegin()->first + 1;
    const auto nota = fichero(nombreDe(numero, kDeNota));
    Disco& disco = plataforma_.disco();
    const bool deAntes = !hay(actual_->nota().fichero());
    if (deAntes) {
        Nota(disco, nota).crear({apunte::Desconocida{}});
    } else {
        ficheros::mover(disco, actual_->nota().fichero(), nota);
    }
    actual_.reset();
    auto lote = std::make_unique<Lote>(plataforma_, numero, sacoTramas::fichero(plataforma_), nota);
    lote->releer();
    Lote& apartado = *(apartados_[numero] = std::move(lote));
    // Its last record is what the download may begin with: without it nothing is asked for.
    if (apartado.ilegible()) throw ErrorFichero(apartado.porQueIlegible());
    mudarAlmacen(apartado);
    if (deAntes) ficheros::borrar(disco, fichero(kMarcaAntigua));
}

void Pendientes::mudarAlmacen(Lote& lote) {
    auto almacen = fichero(nombreDe(lote.numero(), kDeAlmacen));
    if (hay(lote.almacen())) {
        ficheros::mover(plataforma_.disco(), lote.almacen(), almacen);
    }
    lote.mudado(std::move(almacen));
}

/// The store is about to be emptied: the record that may come again is in the note by then.
void Pendientes::conservarCopia() {
    Lote* ultimo = actual_.get();
    if (ultimo == nullptr && !apartados_.empty()) ultimo = apartados_.rbegin()->second.get();
    if (ultimo != nullptr && ultimo->ilegible()) throw ErrorFichero(ultimo->porQueIlegible());
    // Also what the note seems to say already: whoever wrote it may not have lived to flush it.
    if (ultimo == nullptr || ultimo->cuantas() == 0 || ultimo->copia().empty()) return;
    ultimo->nota().apuntar({apunte::Copia{ultimo->copia()}});
}

bool Pendientes::preparar() {
    const std::string copia = this->copia();
    try {
        auto lote = std::make_unique<Lote>(plataforma_, 0, sacoTramas::fichero(plataforma_),
                                           fichero(kNotaActual));
        std::vector<Apunte> primeros;
        if (!copia.empty()) primeros.emplace_back(apunte::Copia{copia});
        lote->nota().crear(primeros);
        actual_ = std::move(lote);
        retirar();
        return true;
    } catch (const ErrorFichero& error) {
        atasco_ = error.what();
        return false;
    }
}

void Pendientes::retirar() {
    std::vector<Lote*> llegados;
    for (const auto& [numero, lote] : apartados_) {
        if (lote->llegado()) llegados.push_back(lote.get());
    }
    for (Lote* lote : llegados) {
        try {
            retirar(*lote);
        } catch (const ErrorFichero&) {
            return;  // it says of itself that it has arrived: the next time will do
        }
    }
}

/// Store, then note: the other way round the store would look like one that nobody has saved.
void Pendientes::retirar(Lote& lote) {
    Disco& disco = plataforma_.disco();
    const bool lleva = !actual_ && &lote == apartados_.rbegin()->second.get();
    if (lleva && lote.cuantas() == 0 && !lote.nota().copia().empty()) return;
    if (lleva && lote.copia() != lote.nota().copia()) {
        lote.nota().apuntar({apunte::Copia{lote.copia()}});
    }
    ficheros::borrar(disco, lote.almacen());
    ficheros::sincronizarCarpeta(disco, plataforma_.carpetaPrograma());
    // The last note keeps the record that may come again until the next download has one.
    if (lleva && !lote.nota().copia().empty()) return lote.releer();
    ficheros::borrar(disco, lote.nota().fichero());
    ficheros::sincronizarCarpeta(disco, plataforma_.carpetaPrograma());
    apartados_.erase(lote.numero());
}

}  // namespace bn
