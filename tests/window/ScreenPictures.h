#pragma once

#include "ui/Language.h"
#include "window/WindowFixture.h"

#include <QGuiApplication>
#include <QImage>
#include <QTranslator>
#include <optional>

namespace vantro::window {

/// Translates every text into itself in brackets.
class Brackets : public QTranslator {
  public:
    bool isEmpty() const override { return false; }
    QString translate(const char*, const char* source, const char*, int) const override {
        return u'[' + QString::fromUtf8(source) + u']';
    }
};

struct Look {
    const char* name;
    ui::ThemeChoice theme;
    bool isForeign; ///< in another language, from right to left
    bool isGerman = false;
};

/// A page of text, as it is recorded most often.
QImage pageOfText(int second);

/// Shows every screen in one look, keeps the pictures for people, and checks what can be checked
/// without taste: the theme's background, that no text of ours is cut off, and that all of them can
/// be translated. The editor takes the size VANTRO_PICTURE_SIZE, WIDTHxHEIGHT.
class ScreenPictureTest : public test::WindowFixture, public testing::WithParamInterface<Look> {
  protected:
    ScreenPictureTest();
    ~ScreenPictureTest() override;

    enum class Texts { allOurs, others };

    QQuickWindow& window() override { return front != nullptr ? *front : WindowFixture::window(); }
    QQuickWindow* front = nullptr; ///< shown instead of the main one

    void keep(const char* name, Texts texts = Texts::allOurs);
    bool isLeftOf(const char* a, const char* b) {
        return item(a).mapToScene({}).x() < item(b).mapToScene({}).x();
    }

    /// Whether the film is made in the size that the stage has now; small ones are not enlarged.
    bool fillsStage();

  private:
    void check(QQuickItem* shown, const char* screen, Texts texts);

    Brackets m_brackets;
    std::optional<ui::Language> m_german;
};

} // namespace vantro::window
