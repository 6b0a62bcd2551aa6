#include "publish/text_channel.h"

#include "core/file_steps.h"
#include "core/store/errors.h"

#include <array>

namespace lx {

namespace {

// Windows-1252 from 0x80 to 0x9F; elsewhere it is Latin-1. The five codes the page leaves
// unassigned stand for the control characters of the same number.
constexpr std::array<char16_t, 32> kHighCodes = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

char CodeOf(char32_t ch)
{
    if (ch < 0x80 || (ch >= 0xA0 && ch <= 0xFF))
        return char(ch);
    for (size_t i = 0; i < kHighCodes.size(); ++i)
        if (kHighCodes[i] == ch)
            return char(0x80 + i);
    return '?';
}

[[noreturn]] void AccessError()
{
    throw store::StoreError(PathFileAccessError, QStringLiteral("Path/File access error"));
}

// Appends the text in the code page: one byte for each character, a surrogate pair being one.
void AppendCodePage(QByteArray &bytes, QStringView text)
{
    const qsizetype start = bytes.size();
    bytes.resize(start + text.size());
    char *out = bytes.data() + start;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t ch = text[i].unicode();
        if (ch < 0x80) {
            *out++ = char(ch);
            continue;
        }
        if (QChar::isHighSurrogate(ch) && i + 1 < text.size() &&
            QChar::isLowSurrogate(text[i + 1].unicode()))
            ++i; // no character past the first plane is in the code page
        *out++ = CodeOf(ch);
    }
    bytes.truncate(out - bytes.data());
}

} // namespace

QByteArray ToCodePage(QStringView text)
{
    QByteArray bytes;
    AppendCodePage(bytes, text);
    return bytes;
}

QString FromCodePage(QByteArrayView bytes)
{
    QString text;
    text.reserve(bytes.size());
    for (const char byte : bytes) {
        const auto code = static_cast<unsigned char>(byte);
        text.append(code >= 0x80 && code < 0xA0 ? QChar(kHighCodes[code - 0x80]) : QChar(code));
    }
    return text;
}

QStringList ReadCodePageLines(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        AccessError();
    const QByteArray bytes = file.readAll();
    QStringList lines;
    qsizetype start = 0;
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        if (bytes[i] != '\n')
            continue;
        const qsizetype end = i > start && bytes[i - 1] == '\r' ? i - 1 : i;
        lines.append(FromCodePage(QByteArrayView(bytes).sliced(start, end - start)));
        start = i + 1;
    }
    if (start < bytes.size())
        lines.append(FromCodePage(QByteArrayView(bytes).sliced(start)));
    return lines;
}

TextChannel::TextChannel(const QString &path) : m_file(path)
{
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        AccessError();
}

TextChannel::~TextChannel()
{
    try {
        Close();
    } catch (const store::StoreError &) {
        // Nothing to report to from a destructor: the page stays as far as it was written.
    }
}

void TextChannel::Print(QStringView chunk)
{
    AppendCodePage(m_pending, chunk);
    m_pending += "\r\n";
}

void TextChannel::Close()
{
    if (!m_file.isOpen())
        return;
    const bool written = m_file.write(m_pending) == m_pending.size();
    m_pending.clear();
    m_file.close();
    if (!written)
        AccessError();
}

} // namespace lx
