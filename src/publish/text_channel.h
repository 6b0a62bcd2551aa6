#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QStringList>

// A text file written line by line in the system's single-byte code page (Windows-1252), as
// every text file of the program is: each chunk is followed by CR LF, so a chunk that ends in
// CR LF leaves an empty line behind it.
namespace lx {

// The text in Windows-1252. A character the code page doesn't have becomes "?", one for each
// character (a surrogate pair is one character).
QByteArray ToCodePage(QStringView text);

// Text in Windows-1252, as the program's text files hold it.
QString FromCodePage(QByteArrayView bytes);
// The lines of a text file in the code page: each ends at LF, a CR before it dropped; a last
// line without its end counts too. StoreError 75 when the file can't be read.
QStringList ReadCodePageLines(const QString &path);

class TextChannel {
public:
    // Opens `path` for output: a fresh, empty file. StoreError 75 "Path/File access error"
    // when it can't be made.
    explicit TextChannel(const QString &path);
    // Closes the file; what was printed so far is written.
    ~TextChannel();
    TextChannel(const TextChannel &) = delete;
    TextChannel &operator=(const TextChannel &) = delete;

    void Print(QStringView chunk);
    // Writes what is held and closes; StoreError 75 when the bytes can't be written.
    void Close();

private:
    QFile m_file;
    QByteArray m_pending;
};

} // namespace lx
