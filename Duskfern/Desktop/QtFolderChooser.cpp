#include "Desktop/QtFolderChooser.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QSettings>
#include <QtGui/QWindow>
#include <QtWidgets/QFileDialog>

#include <memory>

QtFolderChooser::QtFolderChooser() {
    // The dialog of Qt 6.4 writes its state to QtProject.conf and cannot be told not to. A place where no file can be
    // made keeps that out of the home folder; this program has no settings of its own.
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("/dev/null"));
}

void QtFolderChooser::choose(QWindow* parent, const QString& prompt, const std::optional<FileURL>& start,
                             std::function<void(std::optional<FileURL>)> answer) {
    auto* const dialog = new QFileDialog;
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    dialog->setWindowTitle(QStringLiteral("Elegir carpeta"));
    dialog->setLabelText(QFileDialog::Accept, prompt);
    dialog->setWindowModality(Qt::ApplicationModal);
    dialog->setDirectory(start ? QFile::decodeName(start->path().c_str()) : QDir::homePath());
    // The window of a dialog without a parent widget exists only once its id was asked for.
    (void)dialog->winId();
    dialog->windowHandle()->setTransientParent(parent);
    QObject::connect(dialog, &QFileDialog::finished, dialog, [dialog, answer = std::move(answer)](int result) {
        const QStringList files = dialog->selectedFiles();
        if (result == QDialog::Accepted && !files.isEmpty()) {
            const QString path = QDir::cleanPath(QDir(files.first()).absolutePath());
            answer(FileURL(QFile::encodeName(path).toStdString()));
        } else {
            answer(std::nullopt);
        }
    });
    dialog->open();
}
