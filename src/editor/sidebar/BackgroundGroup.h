#pragma once

#include "app/flows/FilePanels.h"
#include "app/flows/TaskRunner.h"
#include "editor/sidebar/SettingsGroup.h"

#include <QColor>
#include <QStringList>
#include <QUrl>

#include <QtQml/qqmlregistration.h>

namespace vantro::editor::sidebar {

/// What lies behind the recording: a color, one of the program's pictures or the user's own.
class BackgroundGroup : public SettingsGroup {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the program")
    /// A picture; else a color.
    Q_PROPERTY(bool isPicture READ isPicture WRITE setPictureUsed NOTIFY changed)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY changed)
    Q_PROPERTY(QStringList presets READ presets CONSTANT) ///< colors to choose from, "#RRGGBB"
    /// The program's pictures by what they are called, and where their previews are had from.
    Q_PROPERTY(QStringList names READ names CONSTANT)
    Q_PROPERTY(QStringList previews READ previews CONSTANT)
    /// Index into names; -1 for none of them.
    Q_PROPERTY(int picture READ picture WRITE setPicture NOTIFY changed)
    /// The user's own picture: the last that was used, perhaps not now. Empty without one.
    Q_PROPERTY(QString ownName READ ownName NOTIFY changed)
    Q_PROPERTY(QString ownPreview READ ownPreview NOTIFY changed)
    Q_PROPERTY(bool isOwn READ isOwn NOTIFY changed)
    /// Why the picture that was chosen is not to be seen: one sentence.
    Q_PROPERTY(QString problem READ problem NOTIFY problemChanged)

  public:
    /// Pictures are tried on the worker thread of `tasks`.
    BackgroundGroup(app::AppState& state, EditSteps& steps, app::flows::FilePanels& panels,
                    app::flows::TaskRunner& tasks);

    bool isPicture() const { return image() != nullptr; }
    /// Goes on with the color or picture that was used before. Asks for a picture where the program
    /// has none.
    void setPictureUsed(bool used);
    QColor color() const;
    void setColor(const QColor& color);
    QStringList presets() const;
    QStringList names() const;
    QStringList previews() const;
    int picture() const;
    void setPicture(int picture);
    QString ownName() const;
    QString ownPreview() const;
    bool isOwn() const { return image() != nullptr && !image()->isBuiltIn; }
    const QString& problem() const { return m_problem; }

    Q_INVOKABLE void chooseOwn();
    Q_INVOKABLE void useOwn();
    /// A file that was dropped.
    Q_INVOKABLE void usePicture(const QUrl& file);
    Q_INVOKABLE void reset();

  Q_SIGNALS:
    void problemChanged();

  private:
    const model::BackgroundImageSource* image() const;
    void remember();
    void use(model::BackgroundType type);
    void tryPicture(const std::filesystem::path& path);
    void setProblem(const QString& problem);

    app::flows::FilePanels& m_panels;
    app::flows::TaskRunner& m_tasks;
    QString m_problem;
    int m_request = 0; ///< the newest picture that is tried
    // To come back to.
    model::BackgroundColor m_color;
    std::optional<model::BackgroundImageSource> m_picture;
    std::optional<model::BackgroundImageSource> m_own;
};

} // namespace vantro::editor::sidebar
