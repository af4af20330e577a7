#include "editor/sidebar/BackgroundGroup.h"

#include "editor/sidebar/PicturePreviews.h"
#include "media/PictureFile.h"
#include "model/BackgroundCatalog.h"
#include "ui/Sentences.h"

#include <QPointer>
#include <algorithm>

namespace vantro::editor::sidebar {
namespace {

const std::vector<model::BackgroundImageSource>& catalog() {
    return model::BackgroundCatalog::application().builtInBackgrounds();
}

/// Why the picture cannot be used; empty when it can.
std::string problemOf(const std::filesystem::path& path) {
    try {
        media::readPicture(path, {.width = previewSize.width(), .height = previewSize.height()});
        return {};
    } catch (const std::exception& failure) {
        return failure.what();
    }
}

} // namespace

BackgroundGroup::BackgroundGroup(app::AppState& state, EditSteps& steps,
                                 app::flows::FilePanels& panels, app::flows::TaskRunner& tasks)
    : SettingsGroup(
          state, steps,
          [](const auto& a, const auto& b) { return a.background.type != b.background.type; })
    , m_panels(panels)
    , m_tasks(tasks) {
    connect(this, &SettingsGroup::changed, this, &BackgroundGroup::remember);
}

void BackgroundGroup::remember() {
    ++m_request; // what was chosen since wins over a picture that is still being tried
    if (const auto* picture = image()) {
        m_picture = *picture;
        if (!picture->isBuiltIn)
            m_own = *picture;
    } else {
        m_color = std::get<model::BackgroundColor>(edit().background.type);
    }
    setProblem({});
}

const model::BackgroundImageSource* BackgroundGroup::image() const {
    return std::get_if<model::BackgroundImageSource>(&edit().background.type);
}

void BackgroundGroup::use(model::BackgroundType type) {
    change(QT_TRANSLATE_NOOP("Edit", "Change Background"),
           [&](auto& edit) { edit.background.type = std::move(type); });
}

void BackgroundGroup::setPictureUsed(bool used) {
    if (used == isPicture())
        return;
    if (!used)
        use(m_color);
    else if (m_picture)
        use(*m_picture);
    else if (!catalog().empty())
        use(catalog().front());
    else
        chooseOwn();
}

QColor BackgroundGroup::color() const {
    const auto* color = std::get_if<model::BackgroundColor>(&edit().background.type);
    const auto& shown = color != nullptr ? *color : m_color;
    return QColor(QString::fromStdString(shown.hexString()));
}

void BackgroundGroup::setColor(const QColor& color) {
    if (color.isValid() && (isPicture() || color.rgb() != this->color().rgb()))
        use(model::BackgroundColor{
            .red = color.redF(), .green = color.greenF(), .blue = color.blueF()});
}

QStringList BackgroundGroup::presets() const {
    return {QStringLiteral("#262626"), QStringLiteral("#000000"), QStringLiteral("#FFFFFF"),
            QStringLiteral("#E8E6E1"), QStringLiteral("#2F3E55"), QStringLiteral("#3F6EA5"),
            QStringLiteral("#6FA8DC"), QStringLiteral("#157F5C"), QStringLiteral("#7DBE8E"),
            QStringLiteral("#F2B134"), QStringLiteral("#E07A5F"), QStringLiteral("#C2456D"),
            QStringLiteral("#7C4D9E"), QStringLiteral("#9A7B5F")};
}

QStringList BackgroundGroup::names() const {
    QStringList names;
    for (std::size_t i = 1; i <= catalog().size(); ++i)
        names.append(tr("Picture %1").arg(i));
    return names;
}

QStringList BackgroundGroup::previews() const {
    QStringList sources;
    for (const auto& entry : catalog())
        sources.append(previewSource(entry.thumbnail.value_or(entry.path)));
    return sources;
}

int BackgroundGroup::picture() const {
    const auto* shown = image();
    if (shown == nullptr)
        return -1;
    const auto found =
        std::ranges::find(catalog(), shown->path, &model::BackgroundImageSource::path);
    return found == catalog().end() ? -1 : static_cast<int>(found - catalog().begin());
}

void BackgroundGroup::setPicture(int picture) {
    if (picture >= 0 && picture < static_cast<int>(catalog().size()))
        use(catalog().at(static_cast<std::size_t>(picture)));
}

QString BackgroundGroup::ownName() const {
    const auto& own = isOwn() ? std::optional(*image()) : m_own;
    return own ? QString::fromStdString(own->name) : QString();
}

QString BackgroundGroup::ownPreview() const {
    const auto& own = isOwn() ? std::optional(*image()) : m_own;
    return own ? previewSource(own->path) : QString();
}

void BackgroundGroup::chooseOwn() {
    m_panels.ask(app::flows::PanelKind::openPicture, {}, [this](const auto& chosen) {
        if (chosen)
            tryPicture(chosen->path);
    });
}

void BackgroundGroup::useOwn() {
    if (m_own)
        tryPicture(m_own->path);
}

void BackgroundGroup::usePicture(const QUrl& file) {
    if (file.isLocalFile())
        tryPicture(file.toLocalFile().toStdString());
}

void BackgroundGroup::tryPicture(const std::filesystem::path& path) {
    m_tasks.run([self = QPointer(this), path,
                 request = ++m_request]() -> app::flows::TaskRunner::Continuation {
        return [self, path, request, problem = problemOf(path)] {
            if (!self || request != self->m_request || !self->state().document().recording())
                return;
            if (problem.empty())
                self->use(model::BackgroundImageSource::custom(path));
            self->setProblem(ui::sentence(problem));
        };
    });
}

void BackgroundGroup::setProblem(const QString& problem) {
    if (m_problem == problem)
        return;
    m_problem = problem;
    Q_EMIT problemChanged();
}

void BackgroundGroup::reset() {
    change(QT_TRANSLATE_NOOP("Edit", "Reset Background"),
           [](auto& edit) { edit.background.type = model::BackgroundColor(); });
}

} // namespace vantro::editor::sidebar
