#include "app/midi_chooser.h"

#include <QDir>
#include <QFileDialog>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace kelo {

void MidiChooser::open(QWindow &window, const QString &folder, const Chosen &chosen)
{
    if (dialog_) {
        dialog_->raise();
        dialog_->activateWindow();
        return;
    }
    dialog_ = new QFileDialog(nullptr, tr("Choose a MIDI file or a score to play"),
        folder.isEmpty() ? QDir::homePath() : folder);
    dialog_->setAttribute(Qt::WA_DeleteOnClose);
    dialog_->setFileMode(QFileDialog::ExistingFile);
    dialog_->setNameFilter(tr("Music (*.mid *.midi *.kar *.rmi *.musicxml *.mxl *.xml)"));
    dialog_->setModal(true);
    connect(dialog_, &QFileDialog::fileSelected, this, chosen);
    dialog_->winId(); // makes the window behind it, so that it can be tied to ours
    dialog_->windowHandle()->setTransientParent(&window);
    dialog_->show();
}

} // namespace kelo
