#include "ui/KeptLook.h"

#include "archive/ArchivePath.h"
#include "base/Log.h"
#include "base/OutputFile.h"
#include "model/Json.h"

#include <QCryptographicHash>
#include <QFile>

namespace vantro::ui {
namespace {

namespace fs = std::filesystem;

/// A copy whose name tells its content, so that no other takes its place while a recording shows
/// it. `picture` may lie in an archive.
fs::path copyInto(const fs::path& folder, const fs::path& picture) {
    constexpr std::uint64_t largest = 256'000'000; // bytes, as for every picture
    if (picture.parent_path() == folder)
        return picture;
    const auto bytes = archive::readAll(archive::locate(picture), largest);
    const auto hash =
        QCryptographicHash::hash(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())),
                                 QCryptographicHash::Sha1);
    constexpr qsizetype enough = 8; // characters
    auto copy = folder / (picture.stem().string() + "-" + hash.toHex().left(enough).toStdString() +
                          picture.extension().string());
    fs::create_directories(folder);
    base::writeWholeFile(copy, bytes);
    return copy;
}

} // namespace

QString keptLook(model::Look look, const fs::path& pictures) {
    auto* picture = std::get_if<model::BackgroundImageSource>(&look.background.type);
    if (picture != nullptr && !picture->isBuiltIn)
        try {
            picture->path = copyInto(pictures, picture->path);
        } catch (const std::exception& error) {
            base::logWarning("The background of new recordings is the usual one: {}", error.what());
            look.background.type = model::BackgroundColor{};
        }
    return QString::fromStdString(model::encodeLook(look));
}

std::optional<model::Look> lookFrom(const QString& kept, const fs::path& pictures) {
    try {
        auto look = model::decodeLook(kept.toStdString(), pictures);
        const auto* picture = std::get_if<model::BackgroundImageSource>(&look.background.type);
        if (picture != nullptr && !QFile::exists(QString::fromStdString(picture->path.string())))
            look.background.type = model::BackgroundColor{};
        return look;
    } catch (const model::DecodingError& error) {
        base::logWarning("The look of new recordings is left out: {}", error.what());
        return {};
    }
}

} // namespace vantro::ui
