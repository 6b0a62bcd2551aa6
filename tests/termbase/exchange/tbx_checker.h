#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

// A TBX file read back into a tree, and a checker of the TBX-Basic rules (DCA style) that the
// exporter must keep: the core structure's nesting and attributes, the dialect's data
// categories with their levels and closed values, and ids with the references to them.
namespace lx::test {

struct XmlNode {
    QString Name;
    QString Namespace;
    QMap<QString, QString> Attributes; // by qualified name: "xml:lang"
    QString Text;                      // the text directly inside, whitespace kept
    std::vector<XmlNode> Children;

    const XmlNode *child(const QString &name) const;
    std::vector<const XmlNode *> children(const QString &name) const;
    QString attr(const QString &name) const { return Attributes.value(name); }
};

// The document element, or nothing with the reader's error in `error`.
std::optional<XmlNode> ParseXml(const QByteArray &xml, QString *error = nullptr);

// Each breach of the rules as one line naming the element's path; empty for a valid file.
QStringList CheckTbxBasic(const XmlNode &root);

} // namespace lx::test
