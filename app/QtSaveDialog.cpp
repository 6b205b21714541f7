#include "app/QtSaveDialog.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QStringList>

#include "app/DialogOwner.h"
#include "ui/AnsiString.h"

namespace tallyhorn {
namespace {

/// Returns the descriptions of "DESCRIPTION|PATTERN" pairs, each followed by its pattern in parentheses as Qt
/// expects.
QStringList NameFilters(std::string_view fileTypes) {
    const QStringList parts = ToQString(fileTypes).split(QLatin1Char('|'));
    QStringList filters;
    for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
        const QString pattern = QStringLiteral("(%1)").arg(QString(parts[i + 1]).replace(';', ' '));
        filters << (parts[i].endsWith(pattern) ? parts[i] : parts[i] + QLatin1Char(' ') + pattern);
    }
    return filters;
}

/// Returns what follows "*." in the first filter's pattern.
QString DefaultSuffix(const QStringList& filters) {
    const QString pattern = filters.value(0).section(QLatin1Char('('), -1).section(QLatin1Char(')'), 0, 0);
    return pattern.section(QLatin1Char(' '), 0, 0).section(QStringLiteral("*."), 1);
}

}  // namespace

std::optional<std::filesystem::path> QtSaveDialog::AskFile(const std::filesystem::path& proposal,
                                                           std::string_view fileTypes) {
    // QFileInfo converts paths correctly on every system, whether they consist of bytes or of UTF-16.
    const QFileInfo proposed(proposal);
    const QStringList filters = NameFilters(fileTypes);
    QFileDialog dialog(DialogOwner(owner_));
    // The dialogs of some desktops have no title by default.
    dialog.setWindowTitle(QStringLiteral("Save As"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setNameFilters(filters);
    dialog.setDefaultSuffix(DefaultSuffix(filters));
    dialog.setDirectory(proposed.absolutePath());
    dialog.selectFile(proposed.fileName());
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return std::nullopt;
    return QFileInfo(dialog.selectedFiles().constFirst()).filesystemFilePath();
}

}  // namespace tallyhorn
