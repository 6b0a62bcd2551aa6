#include "publish/person_page.h"

#include "core/process.h"
#include "publish/text_channel.h"
#include "termbase/store/lifecycle.h"

#include <QDate>
#include <QDir>

#include <initializer_list>
#include <utility>

namespace lx {

QString PersonPagePath(const QString &alias)
{
    const QString folder = TermbaseBackFolder(Process().TermMeta.Name);
    QDir().mkpath(folder);
    return folder + QStringLiteral("/per-") + alias + QStringLiteral(".html");
}

void WritePersonPage(const PersonFields &person)
{
    TextChannel page(PersonPagePath(person.Alias));
    const QString alias = person.Alias.toHtmlEscaped();
    for (const QString &line :
         {QStringLiteral("<HTML>"), QStringLiteral("<HEAD>"),
          QStringLiteral("<TITLE>") + alias + QStringLiteral("</TITLE>"), QStringLiteral("</HEAD>"),
          QStringLiteral("<BODY>"),
          QStringLiteral("<SMALL>") + Process().TermMeta.Name.toHtmlEscaped() +
              QStringLiteral(". Updated: ") +
              QDate::currentDate().toString(QStringLiteral("dd/MM/yyyy")) +
              QStringLiteral("</SMALL>"),
          QStringLiteral("<p></p>"), QStringLiteral("<strong>Alias:</strong> ") + alias,
          QStringLiteral("<br>")})
        page.Print(line);
    const std::pair<const char *, const QString *> fields[] = {
        {"<strong>Role: </strong>", &person.Role},
        {"<strong>Name: </strong>", &person.Name},
        {"<strong>E-mail: </strong>", &person.Email},
        {"<strong>Phone: </strong>", &person.Phone},
        {"<strong>Remarks: </strong>", &person.Remarks},
    };
    for (const auto &[label, value] : fields) {
        if (value->isEmpty())
            continue;
        page.Print(QString::fromLatin1(label) + value->toHtmlEscaped());
        page.Print(QStringLiteral("<br>"));
    }
    page.Print(QStringLiteral("</BODY>"));
    page.Print(QStringLiteral("</HTML>"));
    page.Close();
}

} // namespace lx
