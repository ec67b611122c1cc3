// SPDX-License-Identifier: MIT
#include "tests/soporte/DiscoSimulado.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <utility>

#include "platform/Ficheros.h"

namespace bn {
namespace {

namespace fs = std::filesystem;
using Causa = ErrorFichero::Causa;
using Tipo = Operacion::Tipo;

[[noreturn]] void lanzar(const fs::path& ruta, Causa causa) {
    static const std::map<Causa, std::string> kTextos = {
        {Causa::kNoExiste, "no existe"},
        {Causa::kSinPermiso, "acceso denegado"},
        {Causa::kLleno, "el disco está lleno"},
        {Causa::kEnUso, "está en uso por otro programa"},
        {Causa::kEsCarpeta, "es una carpeta"},
        {Causa::kSoloLectura, "el disco es de solo lectura"},
        {Causa::kAveria, "error de lectura o escritura del disco"},
        {Causa::kOtra, "error del sistema"}};
    throw ErrorFichero(ruta, kTextos.at(causa), causa);
}

const char* nombreDelTipo(Tipo tipo) {
    static constexpr std::array kNombres = {"abrir",  "nuevo",     "mirar",  "resolver",
                                            "listar", "renombrar", "borrar", "volcar carpeta",
                                            "leer",   "escribir",  "anadir", "medir",
                                            "cortar", "volcar",    "heredar"};
    return kNombres.at(static_cast<std::size_t>(tipo));
}

}  // namespace

std::string Operacion::texto() const {
    std::string linea = std::to_string(numero) + " " + nombreDelTipo(tipo) + " ";
    linea += ficheros::aTexto(ruta);
    if (!destino.empty()) linea += " -> " + ficheros::aTexto(destino);
    if (escribe() || tipo == Tipo::kLeer || tipo == Tipo::kCortar) {
        linea += " @" + std::to_string(desde);
    }
    if (bytes > 0) linea += " +" + std::to_string(bytes);
    return linea;
}

/// One operation from its beginning to its end.
class DiscoSimulado::Turno {
 public:
    /// Throws what has to happen before it.
    Turno(DiscoSimulado& disco, Operacion operacion) : disco_(disco), ruta_(operacion.ruta) {
        if (!disco.vivo_) throw MuerteSubita{};
        operacion.numero = ++disco.operaciones_;
        avisar(operacion);
        muere_ = disco.ultima_ == operacion.numero;
        if (muere_) momento_ = disco.momento_;
        if (!muere_) buscarFallo(operacion);
        const bool antes =
            momento_ == Momento::kAntes || (momento_ == Momento::kAMedias && !operacion.escribe());
        if (antes) acabar();
    }

    /// How many of these bytes are written.
    std::size_t parte(std::size_t bytes) const {
        return algoPasa() && momento_ == Momento::kAMedias ? bytes / 2 : bytes;
    }
    /// Throws what has to happen after it.
    void acabar() const {
        if (muere_) {
            disco_.morir();
            throw MuerteSubita{};
        }
        if (causa_) lanzar(ruta_, *causa_);
    }

 private:
    void avisar(const Operacion& operacion) const {
        if (!disco_.alOperar) return;
        try {
            disco_.alOperar(operacion);
        } catch (const MuerteSubita&) {
            disco_.morir();
            throw;
        }
        if (!disco_.vivo_) throw MuerteSubita{};
    }

    void buscarFallo(const Operacion& operacion) {
        Fallo* fallo = disco_.falloDe(operacion);
        if (fallo == nullptr) return;
        causa_ = fallo->causa;
        momento_ = fallo->momento;
    }

    bool algoPasa() const { return muere_ || causa_; }

    DiscoSimulado& disco_;
    fs::path ruta_;
    std::optional<Causa> causa_;
    Momento momento_ = Momento::kDespues;
    bool muere_ = false;
};

/// A file that some process has open.
class DiscoSimulado::Abierto final : public Disco::Fichero {
 public:
    Abierto(DiscoSimulado& disco, fs::path ruta, std::shared_ptr<FicheroSimulado> fichero,
            Modo modo)
        : disco_(disco),
          ruta_(std::move(ruta)),
          nombre_(nombreDe(ruta_)),
          fichero_(std::move(fichero)),
          modo_(modo),
          vida_(disco.vida_) {}

    std::size_t leer(std::uint64_t desde, char* destino, std::size_t cabida) override {
        exigirModo(modo_ == Modo::kLeer);
        const Turno turno = empezar({.tipo = Tipo::kLeer, .desde = desde, .bytes = cabida});
        const std::string& todo = fichero_->visto();
        const std::size_t leidos =
            desde < todo.size() ? todo.copy(destino, cabida, static_cast<std::size_t>(desde)) : 0;
        turno.acabar();
        return leidos;
    }

    std::size_t escribir(std::uint64_t desde, std::string_view bytes) override {
        exigirModo(modo_ == Modo::kEscribir);
        return escribirEn(Tipo::kEscribir, desde, bytes);
    }

    std::size_t anadir(std::string_view bytes) override {
        exigirModo(modo_ == Modo::kAnadir);
        return escribirEn(Tipo::kAnadir, fichero_->visto().size(), bytes);
    }

    std::uint64_t largo() override {
        empezar({.tipo = Tipo::kMedir}).acabar();
        return fichero_->visto().size();
    }

    void cortar(std::uint64_t largo) override {
        exigirModo(modo_ != Modo::kLeer);
        const Turno turno = empezar({.tipo = Tipo::kCortar, .desde = largo});
        fichero_->cortar(largo);
        turno.acabar();
    }

    void sincronizar() override {
        try {
            const Turno turno = empezar({.tipo = Tipo::kVolcar});
            fichero_->volcar();
            turno.acabar();
        } catch (const ErrorFichero& error) {
            if (error.causa() != Causa::kEnUso) fichero_->fallarAlVolcar();
            throw;
        }
    }

    void heredar(const fs::path& otro) override {
        const Turno turno = empezar({.tipo = Tipo::kHeredar, .destino = otro});
        disco_.exigirFichero(otro);
        turno.acabar();
    }

 private:
    static void exigirModo(bool permitido) {
        if (!permitido) throw std::logic_error("the file was not opened for this");
    }

    Turno empezar(Operacion operacion) {
        if (vida_ != disco_.vida_) throw MuerteSubita{};
        operacion.ruta = ruta_;
        Turno turno(disco_, std::move(operacion));
        if (disco_.escondido(nombre_)) lanzar(ruta_, Causa::kAveria);
        return turno;
    }

    std::size_t escribirEn(Tipo tipo, std::uint64_t desde, std::string_view bytes) {
        const Turno turno = empezar({.tipo = tipo, .desde = desde, .bytes = bytes.size()});
        const std::uint64_t antes = fichero_->visto().size();
        const std::uint64_t caben = disco_.sitioLibre() + (antes > desde ? antes - desde : 0);
        const auto escritos =
            static_cast<std::size_t>(std::min<std::uint64_t>(turno.parte(bytes.size()), caben));
        fichero_->escribir(desde, bytes.substr(0, escritos));
        turno.acabar();
        if (escritos == 0 && !bytes.empty()) lanzar(ruta_, Causa::kLleno);
        return escritos;
    }

    DiscoSimulado& disco_;
    fs::path ruta_;
    Nombre nombre_;
    std::shared_ptr<FicheroSimulado> fichero_;
    Modo modo_;
    std::uint32_t vida_;
};

DiscoSimulado::Nombre DiscoSimulado::nombreDe(const fs::path& ruta) {
    Nombre nombre = ficheros::aTexto(ruta.lexically_normal());
    std::replace(nombre.begin(), nombre.end(), '\\', '/');
    while (nombre.size() > 1 && nombre.ends_with('/')) nombre.pop_back();
    return nombre == "." ? "" : nombre;
}

DiscoSimulado::Nombre DiscoSimulado::carpetaDe(const Nombre& nombre) {
    const std::size_t barra = nombre.rfind('/');
    if (barra == Nombre::npos) return "";
    return nombre.substr(0, std::max<std::size_t>(barra, 1));
}

void DiscoSimulado::aplicar(Nombres& nombres, const Paso& paso) {
    if (paso.va) nombres.erase(*paso.va);
    if (!paso.viene) return;
    // A step on the way here may be missing; a file under two names is none of the states.
    std::erase_if(nombres, [&](const auto& nombre) { return nombre.second == paso.fichero; });
    nombres[*paso.viene] = paso.fichero;
}

void DiscoSimulado::dar(Paso paso) {
    aplicar(vistos_, paso);
    pasos_.push_back(std::move(paso));
}

/// Where names have an order, all that went before goes with a folder's; where not, only what its
/// own steps rest on.
void DiscoSimulado::volcarNombres(const Nombre& carpeta) {
    std::set<Nombre> tocados;
    std::vector<Paso> quedan;
    std::vector<Paso> salen;
    for (auto paso = pasos_.rbegin(); paso != pasos_.rend(); ++paso) {
        bool sale = sistema_ != SistemaDeFicheros::kSinOrden;
        for (const auto& nombre : {paso->va, paso->viene}) {
            sale = sale || (nombre && (carpetaDe(*nombre) == carpeta || tocados.contains(*nombre)));
        }
        if (sale && paso->va) tocados.insert(*paso->va);
        if (sale && paso->viene) tocados.insert(*paso->viene);
        (sale ? salen : quedan).push_back(std::move(*paso));
    }
    for (auto paso = salen.rbegin(); paso != salen.rend(); ++paso) aplicar(enDisco_, *paso);
    pasos_.assign(std::make_move_iterator(quedan.rbegin()), std::make_move_iterator(quedan.rend()));
}

void DiscoSimulado::crearCarpeta(const fs::path& ruta) {
    for (Nombre nombre = nombreDe(ruta); carpetas_.insert(nombre).second;) {
        nombre = carpetaDe(nombre);
    }
}

void DiscoSimulado::poner(const fs::path& ruta, std::string contenido) {
    const Nombre nombre = nombreDe(ruta);
    crearCarpeta(ruta.parent_path());
    const auto fichero = std::make_shared<FicheroSimulado>(std::move(contenido));
    volcarNombres(carpetaDe(nombre));
    vistos_[nombre] = fichero;
    enDisco_[nombre] = fichero;
}

void DiscoSimulado::quitar(const fs::path& ruta) {
    const Nombre nombre = nombreDe(ruta);
    volcarNombres(carpetaDe(nombre));
    vistos_.erase(nombre);
    enDisco_.erase(nombre);
}

const std::string& DiscoSimulado::contenido(const fs::path& ruta) const {
    return vistos_.at(nombreDe(ruta))->visto();
}

bool DiscoSimulado::existe(const fs::path& ruta) const {
    return vistos_.contains(nombreDe(ruta)) || carpetas_.contains(nombreDe(ruta));
}

std::vector<std::string> DiscoSimulado::nombres(const fs::path& carpeta) const {
    std::vector<std::string> todos;
    const auto anotar = [&](const Nombre& nombre) {
        if (nombre == nombreDe(carpeta) || carpetaDe(nombre) != nombreDe(carpeta)) return;
        todos.push_back(ficheros::aTexto(ficheros::aRuta(nombre).filename()));
    };
    for (const auto& [nombre, fichero] : vistos_) anotar(nombre);
    for (const Nombre& nombre : carpetas_) anotar(nombre);
    std::sort(todos.begin(), todos.end());
    return todos;
}

bool DiscoSimulado::todoVolcado() const {
    return pasos_.empty() && std::all_of(vistos_.begin(), vistos_.end(),
                                         [](const auto& visto) { return visto.second->volcado(); });
}

void DiscoSimulado::fallar(Causa causa, Condicion condicion, int veces, Momento momento) {
    fallos_.push_back({causa, std::move(condicion), veces, momento});
}

void DiscoSimulado::fallar(Causa causa, Tipo tipo, int veces, Momento momento) {
    fallar(
        causa, [tipo](const Operacion& operacion) { return operacion.tipo == tipo; }, veces,
        momento);
}

DiscoSimulado::Fallo* DiscoSimulado::falloDe(const Operacion& operacion) {
    for (Fallo& fallo : fallos_) {
        if (fallo.veces == 0 || !fallo.condicion(operacion)) continue;
        if (fallo.veces != kSiempre) --fallo.veces;
        return &fallo;
    }
    return nullptr;
}

void DiscoSimulado::retener(const fs::path& ruta, std::chrono::milliseconds tiempo) {
    retenidos_[nombreDe(ruta)] = esperado_ + tiempo;
}

void DiscoSimulado::esconder(const fs::path& carpeta, bool escondida) {
    if (escondida) {
        escondidas_.insert(nombreDe(carpeta));
    } else {
        escondidas_.erase(nombreDe(carpeta));
    }
}

void DiscoSimulado::sanar() {
    fallos_.clear();
    capacidad_.reset();
    retenidos_.clear();
    escondidas_.clear();
}

void DiscoSimulado::morirEn(std::int64_t operacion, Momento momento) {
    ultima_ = operacion;
    momento_ = momento;
}

void DiscoSimulado::cortarCorriente(std::uint64_t semilla) {
    Azar azar(semilla);
    const bool enOrden = sistema_ != SistemaDeFicheros::kSinOrden;
    const std::uint64_t enteros = azar.hasta(pasos_.size());
    for (std::size_t i = 0; i < pasos_.size(); ++i) {
        if (enOrden ? i < enteros : azar.moneda()) aplicar(enDisco_, pasos_[i]);
    }
    pasos_.clear();
    for (const auto& [nombre, fichero] : enDisco_) fichero->cortarCorriente(sistema_, azar);
    vistos_ = enDisco_;
    morir();
}

void DiscoSimulado::revivir() {
    ++vida_;
    ultima_ = 0;
    vivo_ = true;
}

bool DiscoSimulado::escondido(const Nombre& nombre) const {
    return std::any_of(escondidas_.begin(), escondidas_.end(), [&](const Nombre& carpeta) {
        return nombre == carpeta || nombre.starts_with(carpeta + "/");
    });
}

bool DiscoSimulado::hayCarpeta(const Nombre& nombre) const {
    return carpetas_.contains(nombre) && !escondido(nombre);
}

/// Null when there is none.
std::shared_ptr<FicheroSimulado> DiscoSimulado::buscar(const Nombre& nombre) const {
    const auto hallado = vistos_.find(nombre);
    return hallado == vistos_.end() || escondido(nombre) ? nullptr : hallado->second;
}

/// That a file can stand under the name.
void DiscoSimulado::exigirSitio(const fs::path& ruta) const {
    const Nombre nombre = nombreDe(ruta);
    if (hayCarpeta(nombre)) lanzar(ruta, Causa::kEsCarpeta);
    if (nombre.empty() || !hayCarpeta(carpetaDe(nombre))) lanzar(ruta, Causa::kNoExiste);
}

void DiscoSimulado::exigirSuelto(const fs::path& ruta) const {
    if (retenidos_.empty()) return;
    const auto retenido = retenidos_.find(nombreDe(ruta));
    if (retenido != retenidos_.end() && retenido->second > esperado_) lanzar(ruta, Causa::kEnUso);
}

std::shared_ptr<FicheroSimulado> DiscoSimulado::exigirFichero(const fs::path& ruta) const {
    exigirSitio(ruta);
    auto fichero = buscar(nombreDe(ruta));
    if (!fichero) lanzar(ruta, Causa::kNoExiste);
    return fichero;
}

std::uint64_t DiscoSimulado::sitioLibre() const {
    if (!capacidad_) return UINT64_MAX / 2;
    std::uint64_t ocupado = 0;
    for (const auto& [nombre, fichero] : vistos_) ocupado += fichero->visto().size();
    return *capacidad_ > ocupado ? *capacidad_ - ocupado : 0;
}

std::unique_ptr<Disco::Fichero> DiscoSimulado::crear(const fs::path& ruta, Modo modo) {
    const auto fichero = std::make_shared<FicheroSimulado>();
    dar({std::nullopt, nombreDe(ruta), fichero});
    return std::make_unique<Abierto>(*this, ruta, fichero, modo);
}

std::unique_ptr<Disco::Fichero> DiscoSimulado::abrir(const fs::path& ruta, Modo modo) {
    const Turno turno(*this, {.tipo = Tipo::kAbrir, .ruta = ruta});
    exigirSitio(ruta);
    exigirSuelto(ruta);
    const Modo abierto = modo == Modo::kCrear ? Modo::kAnadir : modo;
    const bool falta = modo == Modo::kCrear && !buscar(nombreDe(ruta));
    auto fichero = falta ? crear(ruta, abierto)
                         : std::make_unique<Abierto>(*this, ruta, exigirFichero(ruta), abierto);
    turno.acabar();
    return fichero;
}

std::unique_ptr<Disco::Fichero> DiscoSimulado::nuevo(const fs::path& ruta) {
    const Turno turno(*this, {.tipo = Tipo::kNuevo, .ruta = ruta});
    if (buscar(nombreDe(ruta)) || hayCarpeta(nombreDe(ruta))) return nullptr;
    exigirSitio(ruta);
    exigirSuelto(ruta);
    auto fichero = crear(ruta, Modo::kEscribir);
    turno.acabar();
    return fichero;
}

Disco::Clase DiscoSimulado::queHay(const fs::path& ruta) {
    Turno(*this, {.tipo = Tipo::kMirar, .ruta = ruta}).acabar();
    const Nombre nombre = nombreDe(ruta);
    if (hayCarpeta(nombre)) return Clase::kCarpeta;
    return buscar(nombre) ? Clase::kFichero : Clase::kNada;
}

fs::path DiscoSimulado::destinoReal(const fs::path& ruta) {
    Turno(*this, {.tipo = Tipo::kResolver, .ruta = ruta}).acabar();
    return ruta;
}

std::vector<fs::path> DiscoSimulado::listar(const fs::path& carpeta) {
    Turno(*this, {.tipo = Tipo::kListar, .ruta = carpeta}).acabar();
    if (!hayCarpeta(nombreDe(carpeta))) lanzar(carpeta, Causa::kNoExiste);
    std::vector<fs::path> hallados;
    for (const std::string& nombre : nombres(carpeta)) {
        if (!escondido(nombreDe(carpeta / ficheros::aRuta(nombre)))) {
            hallados.push_back(ficheros::aRuta(nombre));
        }
    }
    return hallados;
}

void DiscoSimulado::renombrar(const fs::path& origen, const fs::path& destino) {
    const Turno turno(*this, {.tipo = Tipo::kRenombrar, .ruta = origen, .destino = destino});
    const auto fichero = exigirFichero(origen);
    try {
        exigirSitio(destino);
        exigirSuelto(origen);
        exigirSuelto(destino);
    } catch (const ErrorFichero& error) {
        lanzar(origen, error.causa());
    }
    if (nombreDe(origen) != nombreDe(destino)) {
        dar({nombreDe(origen), nombreDe(destino), fichero});
    }
    turno.acabar();
}

void DiscoSimulado::borrar(const fs::path& ruta) {
    const Turno turno(*this, {.tipo = Tipo::kBorrar, .ruta = ruta});
    exigirFichero(ruta);
    exigirSuelto(ruta);
    dar({nombreDe(ruta), std::nullopt, nullptr});
    turno.acabar();
}

void DiscoSimulado::sincronizarCarpeta(const fs::path& carpeta) {
    const Turno turno(*this, {.tipo = Tipo::kVolcarCarpeta, .ruta = carpeta});
    const Nombre buscada = nombreDe(carpeta);
    if (!hayCarpeta(buscada)) lanzar(carpeta, Causa::kNoExiste);
    volcarNombres(buscada);
    turno.acabar();
}

void DiscoSimulado::esperar(std::chrono::milliseconds tiempo) {
    if (!vivo_) throw MuerteSubita{};
    esperado_ += tiempo;
    if (alEsperar) alEsperar(tiempo);
}

std::uint32_t DiscoSimulado::proceso() const {
    constexpr std::uint32_t kPrimero = 1000;
    return kPrimero + vida_;
}

}  // namespace bn
