#include "ui/images.h"

#include <QApplication>
#include <QHash>
#include <QStyle>

namespace lx::ui {

namespace {

struct ImageSource {
    const char *theme;
    QStyle::StandardPixmap fallback;
};

const QHash<QString, ImageSource> &Sources()
{
    static const QHash<QString, ImageSource> sources{
        {QStringLiteral("new"), {"document-new", QStyle::SP_FileIcon}},
        {QStringLiteral("open"), {"document-open", QStyle::SP_DialogOpenButton}},
        {QStringLiteral("close"), {"document-close", QStyle::SP_DialogCloseButton}},
        {QStringLiteral("properties"), {"document-properties", QStyle::SP_FileDialogDetailedView}},
        {QStringLiteral("tree"), {"view-list-tree", QStyle::SP_DirOpenIcon}},
        {QStringLiteral("newcpt"), {"list-add", QStyle::SP_FileDialogNewFolder}},
        {QStringLiteral("delcpt"), {"list-remove", QStyle::SP_TrashIcon}},
        {QStringLiteral("note-out"), {"document-edit", QStyle::SP_FileDialogContentsView}},
        {QStringLiteral("note-in"), {"text-x-generic", QStyle::SP_FileDialogInfoView}},
        {QStringLiteral("tbeditor"), {"accessories-dictionary", QStyle::SP_ComputerIcon}},
        {QStringLiteral("help"), {"help-contents", QStyle::SP_DialogHelpButton}},
    };
    return sources;
}

} // namespace

QIcon Image(const QString &key)
{
    const auto found = Sources().constFind(key);
    if (found == Sources().cend())
        return {};
    const QIcon fallback = QApplication::style()->standardIcon(found->fallback);
    return QIcon::fromTheme(QString::fromLatin1(found->theme), fallback);
}

} // namespace lx::ui
