#pragma once

#include <QString>
#include <QStringList>

// The rules for identifiers and for text that goes into queries. Nothing here keeps state.
namespace lx {

// Key filters for identifier boxes: the key code to use, 0 to drop the key.
int FilterConceptKey(int key);
int FilterNamingKey(int key);

QString NormalizeIdentifier(const QString &text);
QString IdentifierToName(const QString &identifier);
QString ReplaceDoubleQuotes(const QString &text);
void FlattenLines(QString &text);

bool FindInList(const QString &text, const QStringList &list);

} // namespace lx
