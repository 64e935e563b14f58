#include "platform/system/Fonts.h"

#include <fontconfig/fontconfig.h>

#include <memory>
#include <system_error>

#include "store/parallel/Threads.h"

namespace platform {

namespace {

template <auto destroy>
struct Destroy {
    template <typename T>
    void operator()(T* object) const {
        destroy(object);
    }
};
using Pattern = std::unique_ptr<FcPattern, Destroy<FcPatternDestroy>>;
using Properties = std::unique_ptr<FcObjectSet, Destroy<FcObjectSetDestroy>>;
using Faces = std::unique_ptr<FcFontSet, Destroy<FcFontSetDestroy>>;

QString property(const FcPattern* face, const char* name) {
    FcChar8* text = nullptr;
    if (FcPatternGetString(face, name, 0, &text) != FcResultMatch) return {};
    return QString::fromUtf8(reinterpret_cast<const char*>(text));
}

}  // namespace

std::jthread readFontsAhead() {
    try {
        return store::startBeside([] { FcInit(); });
    } catch (const std::system_error&) {
        return {};
    }
}

std::optional<FontFace> fontFace(const QString& postScriptName) {
    const Pattern wanted(FcPatternCreate());
    const QByteArray name = postScriptName.toUtf8();
    FcPatternAddString(wanted.get(), FC_POSTSCRIPT_NAME, reinterpret_cast<const FcChar8*>(name.constData()));
    const Properties asked(FcObjectSetBuild(FC_FAMILY, FC_STYLE, nullptr));
    const Faces found(FcFontList(nullptr, wanted.get(), asked.get()));
    if (!found || found->nfont == 0) return std::nullopt;
    return FontFace{property(found->fonts[0], FC_FAMILY), property(found->fonts[0], FC_STYLE)};
}

}  // namespace platform
