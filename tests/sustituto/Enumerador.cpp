// SPDX-License-Identifier: MIT
#include "tests/sustituto/Enumerador.h"

#include <atomic>
#include <utility>

namespace bn::sustituto {

namespace {

std::atomic<int64_t> vivos{0};

class Enumerador final : public IEnumVARIANT {
 public:
    Enumerador(std::shared_ptr<Mundo> mundo, std::string clase, std::vector<VarianteCom> elementos)
        : mundo_(std::move(mundo)), clase_(std::move(clase)), elementos_(std::move(elementos)) {
        ++vivos;
    }
    Enumerador(const Enumerador&) = delete;
    Enumerador& operator=(const Enumerador&) = delete;
    virtual ~Enumerador() { --vivos; }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** objeto) override {
        *objeto = nullptr;
        if (iid != IID_IUnknown && iid != IID_IEnumVARIANT) return E_NOINTERFACE;
        AddRef();
        *objeto = this;
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(++referencias_); }
    ULONG STDMETHODCALLTYPE Release() override {
        const LONG quedan = --referencias_;
        if (quedan == 0) delete this;
        return static_cast<ULONG>(quedan);
    }

    HRESULT STDMETHODCALLTYPE Next(ULONG cuantos, VARIANT* valores, ULONG* dados) override {
        const HRESULT orden = mundo_->diario.llamada(clase_ + ".Next");
        mundo_->diario.anotar(clase_ + ".Next");
        if (orden != S_OK) return orden;
        ULONG puestos = 0;
        for (; puestos < cuantos && siguiente_ < elementos_.size(); ++puestos) {
            valores[puestos] = VarianteCom(elementos_[siguiente_++]).soltar();
        }
        if (dados) *dados = puestos;
        return puestos == cuantos ? S_OK : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE Skip(ULONG /*cuantos*/) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Reset() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Clone(IEnumVARIANT** otro) override {
        *otro = nullptr;
        return E_NOTIMPL;
    }

 private:
    std::shared_ptr<Mundo> mundo_;
    std::string clase_;
    std::vector<VarianteCom> elementos_;
    std::size_t siguiente_ = 0;
    LONG referencias_ = 1;
};

}  // namespace

int64_t enumeradoresVivos() { return vivos; }

VarianteCom nuevoEnumerador(std::shared_ptr<Mundo> mundo, const std::string& clase,
                            std::vector<VarianteCom> elementos) {
    VarianteCom resultado;
    VARIANT* crudo = resultado.recibir();
    V_VT(crudo) = VT_UNKNOWN;
    V_UNKNOWN(crudo) = new Enumerador(std::move(mundo), clase, std::move(elementos));
    return resultado;
}

}  // namespace bn::sustituto
