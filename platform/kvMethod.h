#pragma once

#include <functional>

namespace kv {

// A method pointer of the platform: an object and the code to call on it. Unlike
// std::function two methods compare equal when they name the same member of the same
// object, which is what registries need to find and remove a registration.
template <typename... Args>
class TMethod
{
public:
    using Code = void (*)(void *data, Args...);

    TMethod() = default;
    TMethod(Code code, void *data) : m_code(code), m_data(data) {}

    // TMethod<...>::Of<&Class::Member>(object): one trampoline per member, so the code
    // address tells members apart.
    template <auto Member, typename Class>
    static TMethod Of(Class *object)
    {
        return TMethod(
            [](void *data, Args... args) { (static_cast<Class *>(data)->*Member)(args...); },
            static_cast<void *>(object));
    }

    // A free function with a data pointer handed back to it.
    template <void (*Function)(void *, Args...)>
    static TMethod OfFunction(void *data)
    {
        return TMethod(Function, data);
    }

    void operator()(Args... args) const { m_code(m_data, args...); }
    explicit operator bool() const { return m_code != nullptr; }

    Code GetCode() const { return m_code; }
    void *GetData() const { return m_data; }

    friend bool operator==(const TMethod &a, const TMethod &b)
    {
        return a.m_code == b.m_code && a.m_data == b.m_data;
    }

private:
    Code m_code = nullptr;
    void *m_data = nullptr;
};

} // namespace kv
