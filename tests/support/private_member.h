#pragma once

namespace support {

/// Reaches a private member from a test without a word about it in the class. Explicit
/// instantiation doesn't check access:
///
///     using Handle = support::PrivateMember<struct HandleTag, Inside *Outer::*>;
///     template struct support::OpenMember<Handle, &Outer::m_pHandle>;
///     ... outer.*support::member(Handle{}) = nullptr;
template <typename Tag, typename Pointer>
struct PrivateMember {
    using Type = Pointer;
    friend Type member(PrivateMember);
};

template <typename Member, typename Member::Type pointer>
struct OpenMember {
    friend typename Member::Type member(Member) { return pointer; }
};

}  // namespace support
