#include "window/ScreenPictures.h"

#include <QPainter>
#include <cmath>

namespace vantro::window {

QImage pageOfText(int second) {
    QImage picture(1280, 720, QImage::Format_RGB32);
    picture.fill(QColor("#f4f5f7"));
    QPainter painter(&picture);
    painter.fillRect(0, 0, 1280, 64, QColor("#1f3a5f"));
    for (int line = 0; line < 14; ++line)
        painter.fillRect(90, 120 + line * 40, 300 + line * 97 % 500, 14, QColor("#9aa5b1"));
    painter.fillRect(900, 130, 290, 190, QColor::fromHsv(second * 37 % 360, 120, 220));
    painter.fillRect(900, 350, 290, 290, QColor("#dfe3e8"));
    return picture;
}

ScreenPictureTest::ScreenPictureTest() {
    if (GetParam().isForeign) {
        QCoreApplication::installTranslator(&m_brackets);
        QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    }
    if (GetParam().isGerman)
        m_german.emplace(QStringLiteral("de"), *QCoreApplication::instance());
    preferences.setTheme(GetParam().theme);
    showWindow();
}

ScreenPictureTest::~ScreenPictureTest() {
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
    QCoreApplication::removeTranslator(&m_brackets);
}

void ScreenPictureTest::keep(const char* name, Texts texts) {
    const auto size = qEnvironmentVariable("VANTRO_PICTURE_SIZE").split(u'x');
    if (size.size() == 2 && app.screen() == QStringLiteral("editor"))
        window().resize(size[0].toInt(), size[1].toInt());
    settle();
    keepPicture(QString::fromLatin1(GetParam().name) + u'-' + QString::fromLatin1(name));
    const auto shot = window().grabWindow();
    const auto corner = shot.pixelColor(1, shot.height() - 2);
    EXPECT_EQ(corner.lightness() < 128, GetParam().theme == ui::ThemeChoice::dark) << name;
    check(window().contentItem(), name, texts);
}

bool ScreenPictureTest::fillsStage() {
    window().grabWindow();
    const auto& stage = item("stage");
    const auto shown = QSizeF(preview.pictureSize()) / window().devicePixelRatio();
    const auto sizes = preview.sizes();
    const bool isWhole =
        sizes && preview.pictureSize() == QSize(sizes->canvas.width, sizes->canvas.height);
    return isWhole || std::abs(shown.width() - stage.width()) < 1 ||
           std::abs(shown.height() - stage.height()) < 1;
}

void ScreenPictureTest::check(QQuickItem* shown, const char* screen, Texts texts) {
    if (!shown->isVisible() || shown->clip())
        return;
    const auto text = shown->property("text").toString();
    if (shown->inherits("QQuickText") && !text.isEmpty()) {
        const auto rect = shown->mapRectToScene(shown->boundingRect());
        const QRectF bounds(QPointF(0, 0), QSizeF(window().size()));
        EXPECT_TRUE(bounds.contains(rect)) << screen << ": " << text.toStdString();
        EXPECT_FALSE(texts == Texts::allOurs && shown->property("truncated").toBool())
            << screen << " cuts off: " << text.toStdString();
        const bool hasLetters =
            std::ranges::any_of(text, [](QChar letter) { return letter.isLetter(); });
        const bool isTranslated = GetParam().isForeign && texts == Texts::allOurs;
        EXPECT_TRUE(!isTranslated || !hasLetters || text.startsWith(u'['))
            << screen << " is not translated: " << text.toStdString();
    }
    for (auto* child : shown->childItems())
        check(child, screen, texts);
}

} // namespace vantro::window
