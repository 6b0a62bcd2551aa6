#include "recordset.h"

#include "core/store/errors.h"
#include "core/store/recordset_impl.h"

namespace lx::store {

QVariant FieldRef::Value() const
{
    return m_rs->value(m_column);
}

QString FieldRef::Text() const
{
    const QVariant v = Value();
    if (v.isNull())
        throw StoreError::make(err::InvalidUseOfNull);
    if (v.typeId() == QMetaType::Bool)
        return v.toBool() ? QStringLiteral("True") : QStringLiteral("False");
    return v.toString();
}

QString FieldRef::Name() const
{
    return m_rs->columns()[size_t(m_column)].name;
}

int FieldRef::Type() const
{
    return m_rs->columns()[size_t(m_column)].type;
}

void FieldRef::setValue(const QVariant &value) const
{
    m_rs->collect(m_column, value);
}

Recordset::Recordset() = default;
Recordset::Recordset(std::unique_ptr<detail::RecordsetImpl> impl) : m_impl(std::move(impl)) {}
Recordset::Recordset(Recordset &&) noexcept = default;
Recordset &Recordset::operator=(Recordset &&) noexcept = default;
Recordset::~Recordset() = default;

detail::RecordsetImpl &Recordset::impl() const
{
    if (!m_impl)
        throw StoreError(err::InvalidOperation, QStringLiteral("Object invalid or no longer set."));
    return *m_impl;
}

int Recordset::Type() const
{
    return impl().type();
}
void Recordset::Close()
{
    m_impl.reset();
}
long Recordset::RecordCount() const
{
    return impl().recordCount();
}
void Recordset::MoveFirst()
{
    impl().moveFirst();
}
void Recordset::MoveLast()
{
    impl().moveLast();
}
void Recordset::MoveNext()
{
    impl().moveNext();
}
void Recordset::MovePrevious()
{
    impl().movePrevious();
}
bool Recordset::Eof() const
{
    return impl().eof();
}
bool Recordset::Bof() const
{
    return impl().bof();
}

FieldRef Recordset::Fields(QStringView name) const
{
    return FieldRef(&impl(), impl().columnIndex(name));
}

FieldRef Recordset::Fields(int index) const
{
    if (index < 0 || index >= FieldCount())
        throw StoreError::make(err::ItemNotFound);
    return FieldRef(&impl(), index);
}

int Recordset::FieldCount() const
{
    return int(impl().columns().size());
}
Bookmark Recordset::GetBookmark() const
{
    return impl().bookmark();
}
void Recordset::SetBookmark(Bookmark bookmark)
{
    impl().setBookmark(bookmark);
}
Bookmark Recordset::LastModified() const
{
    return impl().lastModified();
}
QString Recordset::Index() const
{
    return impl().index();
}
void Recordset::SetIndex(const QString &indexName)
{
    impl().setIndex(indexName);
}
void Recordset::Seek(QStringView op, const QVariant &key)
{
    impl().seek(op, QVariantList{key});
}
void Recordset::Seek(QStringView op, const QVariantList &keys)
{
    impl().seek(op, keys);
}
void Recordset::FindFirst(const QString &criteria)
{
    impl().findFirst(criteria, false);
}
void Recordset::FindNext(const QString &criteria)
{
    impl().findFirst(criteria, true);
}
bool Recordset::NoMatch() const
{
    return impl().noMatch();
}
void Recordset::AddNew()
{
    impl().addNew();
}
void Recordset::Edit()
{
    impl().edit();
}
void Recordset::Collect(QStringView name, const QVariant &value)
{
    impl().collect(impl().columnIndex(name), value);
}
void Recordset::Update()
{
    impl().update();
}
void Recordset::CancelUpdate()
{
    impl().cancelUpdate();
}
void Recordset::Delete()
{
    impl().deleteCurrent();
}
void Recordset::Requery()
{
    impl().requery();
}

} // namespace lx::store
