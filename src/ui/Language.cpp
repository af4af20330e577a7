#include "ui/Language.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <clocale>

namespace vantro::ui {
namespace {

/// The first of the desktop's languages that there are texts in.
QString languageOfDesktop() {
    for (const auto& name : QLocale::system().uiLanguages())
        switch (QLocale(name).language()) {
        case QLocale::German:
            return QStringLiteral("de");
        case QLocale::English:
        case QLocale::C:
            return {};
        default:
            break;
        }
    return {};
}

} // namespace

Language::Language(const QString& wanted, QCoreApplication& application) : QObject(&application) {
    // Qt has taken over the user's. No thread of ours runs yet.
    std::setlocale(LC_NUMERIC, "C"); // NOLINT(concurrency-mt-unsafe)
    if (!wanted.isEmpty() && QLocale(wanted).language() != QLocale().language())
        QLocale::setDefault(QLocale(wanted));
    load(wanted.isEmpty() ? languageOfDesktop() : wanted);
}

Language::~Language() {
    QLocale::setDefault(m_before);
}

/// English is what the sources are written in.
void Language::load(const QString& language) {
    if (m_textsOfQt.load(QStringLiteral("qtbase_") + language,
                         QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&m_textsOfQt);
    if (m_texts.load(QStringLiteral(":/qt/qml/Vantro/translations/vantro_%1.qm").arg(language)))
        QCoreApplication::installTranslator(&m_texts);
}

} // namespace vantro::ui
