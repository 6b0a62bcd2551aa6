#pragma once

#include <QString>
#include <QVariant>

#include <memory>

namespace lx::store {

namespace detail {
class RecordsetImpl;
}

using Bookmark = qint64;

class Recordset;

// A value as text, Null as the empty text: for rows read into lists and pages.
inline QString TextOrEmpty(const QVariant &value)
{
    return value.isNull() ? QString() : value.toString();
}

// One field of the current row: Fields(name).Value().
class FieldRef {
public:
    FieldRef(detail::RecordsetImpl *rs, int column) : m_rs(rs), m_column(column) {}
    QVariant Value() const; // a null QVariant is Null
    QString Text() const;   // the value as text; 94 "Invalid use of Null" on Null
    QString Name() const;
    int Type() const;
    void setValue(const QVariant &value) const; // the same as Collect

private:
    detail::RecordsetImpl *m_rs;
    int m_column;
};

// A cursor over a table (type 1, live), a dynaset (type 2) or a snapshot (type 4).
class Recordset {
public:
    Recordset();
    explicit Recordset(std::unique_ptr<detail::RecordsetImpl> impl);
    Recordset(Recordset &&) noexcept;
    Recordset &operator=(Recordset &&) noexcept;
    ~Recordset();

    bool isOpen() const { return m_impl != nullptr; }
    int Type() const;
    void Close();

    long RecordCount() const;
    void MoveFirst();
    void MoveLast();
    void MoveNext();
    void MovePrevious();
    // EOF and BOF (named so as not to clash with the C library's EOF macro).
    bool Eof() const;
    bool Bof() const;

    FieldRef Fields(QStringView name) const; // 3265 for an unknown name
    FieldRef Fields(int index) const;
    int FieldCount() const;
    QVariant Value(QStringView name) const { return Fields(name).Value(); }

    Bookmark GetBookmark() const;
    void SetBookmark(Bookmark bookmark);
    Bookmark LastModified() const;

    // Table type only.
    QString Index() const;
    void SetIndex(const QString &indexName);
    void Seek(QStringView op, const QVariant &key);
    void Seek(QStringView op, const QVariantList &keys);

    // Dynaset and snapshot.
    void FindFirst(const QString &criteria);
    void FindNext(const QString &criteria);
    bool NoMatch() const;

    void AddNew();
    void Edit();
    void Collect(QStringView name, const QVariant &value);
    void Update();
    void CancelUpdate();
    void Delete();
    void Requery();

private:
    detail::RecordsetImpl &impl() const;
    std::unique_ptr<detail::RecordsetImpl> m_impl;
};

} // namespace lx::store
