#include "app/files/ProjectStores.h"
#include "editor/sidebar/SidebarFixture.h"
#include "ui/Language.h"
#include "ui/Sentences.h"

#include <clocale>

namespace vantro::window {
namespace {

/// Texts and numbers are German for as long as one is there.
struct German {
    ui::Language language{QStringLiteral("de"), *qApp};
};

class GermanWindowTest : public German, public editor::sidebar::SidebarTest {};

TEST_F(GermanWindowTest, NumbersAreShownAndTypedWithAComma) {
    open();
    type("pointerScaleField", "4,5");
    EXPECT_DOUBLE_EQ(edit().cursorScale, 4.5);
    EXPECT_TRUE(text("pointerScaleField").startsWith("4,5"))
        << text("pointerScaleField").toStdString();
    type("pointerScaleField", "2.5");
    EXPECT_DOUBLE_EQ(edit().cursorScale, 2.5);
    EXPECT_EQ(actions.undoName(), "Rückgängig: Größe des Zeigers ändern");
    EXPECT_TRUE(editor.sizeEstimate(0, 0, 0).contains(u','));
}

TEST_F(GermanWindowTest, ErrorsOfEveryLayerAreGerman) {
    const auto lost = QStringLiteral("Nicht aufgenommen: Mikrofon: der Tonserver antwortet nicht");
    record();
    platform.next->recorderStatus.lostSources = {"Microphone: the sound server does not answer"};
    timers.advance(std::chrono::seconds(1));
    EXPECT_EQ(app.recordingNote(), lost);
    state.setError("Display not found", model::VantroError::Kind::captureStartFailed);
    settle();
    EXPECT_EQ(app.messages()->alertText(),
              "Bildschirmaufnahme kann nicht gestartet werden: Bildschirm nicht gefunden");
    EXPECT_EQ(text("acceptButton"), "OK");
}

TEST(Sentences, AreTranslatedPartByPartAroundNamesAndNumbers) {
    const German german;
    const struct {
        const char* told;
        const char* shown;
    } cases[]{
        {"Failed to open project: /a: b/%1.vantro: no such project",
         "Projekt kann nicht geöffnet werden: /a: b/%1.vantro: Projekt nicht vorhanden"},
        {"Export failed: No frame at 9.25 s: the output runs from 0 to 4.000 s",
         "Export fehlgeschlagen: Kein Bild bei 9,25 s: die Ausgabe geht von 0 bis 4,000 s"},
        {"No microphone can be recorded: PipeWire is not running.",
         "Mikrofone können nicht aufgenommen werden: PipeWire läuft nicht."},
        {"On this desktop Vantro's own windows are hidden while recording. Stop with your "
         "desktop's own button, or a key for `vantro stop`.",
         "In dieser Arbeitsumgebung sind Vantros eigene Fenster während der Aufnahme verborgen. "
         "Gestoppt wird mit dem Knopf der Arbeitsumgebung oder einer Taste für „vantro stop“."},
        {"/p.vantro: expected a list, found an object",
         "/p.vantro: erwartet wurde eine Liste, gefunden ein Objekt"},
        {"", ""},
        {"what nobody knows: 1.5", "what nobody knows: 1.5"},
    };
    for (const auto& [told, shown] : cases)
        EXPECT_EQ(ui::sentence(told), shown);
}

/// Whatever the user's locale is, what one program writes another reads.
TEST(Language, FilesAreTheSameInEveryLocale) {
    const QTemporaryDir files;
    const std::filesystem::path folder = files.path().toStdString();
    test::writeColorClock(folder / "recording.mov", 320, 180, 10, 1);
    auto project = test::plainProject(folder / "recording.mov", 10);
    project.edit = editor::sidebar::sampleEdit();
    const auto saved = [&] {
        app::files::saveProject(folder / "a.vantro", project, true);
        return test::contentOf(folder / "a.vantro/project.json");
    };
    const auto plain = saved();
    ASSERT_NE(std::setlocale(LC_ALL, "de_DE.UTF-8"), nullptr);
    ASSERT_STREQ(std::localeconv()->decimal_point, ",");
    QLocale::setDefault(QLocale(QLocale::German));
    EXPECT_EQ(saved(), plain);
    {
        const German german;
        EXPECT_STREQ(std::localeconv()->decimal_point, ".") << "libav reads its options by it";
        EXPECT_EQ(saved(), plain);
    }
    std::setlocale(LC_ALL, "C.UTF-8");
    QLocale::setDefault(QLocale::c());
}

} // namespace
} // namespace vantro::window
