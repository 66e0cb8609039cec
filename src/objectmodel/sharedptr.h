#pragma once

#include <cstddef>
#include <utility>

namespace Morvex {

/// Intrusive reference-counted pointer to a class derived from Shared. May be null. Not for use
/// from several threads.
template <typename T>
class SharedPtr
{
public:
    SharedPtr() = default;
    SharedPtr(std::nullptr_t) {}

    /// Takes part in the ownership of @p object, also when other pointers hold it already.
    explicit SharedPtr(T *object)
        : m_object(object)
    {
        retain();
    }

    SharedPtr(const SharedPtr &other)
        : m_object(other.m_object)
    {
        retain();
    }
    SharedPtr(SharedPtr &&other) noexcept
        : m_object(std::exchange(other.m_object, nullptr))
    {
    }

    template <typename Derived>
    SharedPtr(const SharedPtr<Derived> &other)
        : m_object(other.data())
    {
        retain();
    }

    ~SharedPtr() { release(); }

    SharedPtr &operator=(SharedPtr other) noexcept
    {
        std::swap(m_object, other.m_object);
        return *this;
    }

    T *data() const { return m_object; }
    T *operator->() const { return m_object; }
    T &operator*() const { return *m_object; }
    bool isNull() const { return !m_object; }
    explicit operator bool() const { return m_object; }

    friend bool operator==(const SharedPtr &a, const SharedPtr &b)
    {
        return a.m_object == b.m_object;
    }
    friend bool operator!=(const SharedPtr &a, const SharedPtr &b) { return !(a == b); }

private:
    void retain()
    {
        if (m_object)
            m_object->ref();
    }

    void release()
    {
        if (m_object)
            m_object->deref();
    }

    T *m_object = nullptr;
};

} // namespace Morvex
