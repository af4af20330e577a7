#pragma once

#include <QLocale>
#include <QObject>
#include <QTranslator>

class QCoreApplication;

namespace vantro::ui {

/// The language of all texts in windows, and with it how numbers are written there. Made once the
/// application object is there and before the first window; belongs to that object.
///
/// Files and the terminal follow no locale: the C library goes on to write and read numbers with a
/// point, which libav relies on. Main thread.
class Language : public QObject {
    Q_OBJECT

  public:
    /// `wanted`: "en", "de"; empty takes the first of the desktop's languages that there is.
    Language(const QString& wanted, QCoreApplication& application);
    /// Texts are English again, since translators remove themselves.
    ~Language() override;

  private:
    void load(const QString& language);

    QLocale m_before;
    QTranslator m_texts;
    QTranslator m_textsOfQt;
};

} // namespace vantro::ui
