// The declarations of the built-in operators, from the table builtin_ops.def, and those of the built-in
// types.
#pragma once

#include "ast/node/decl.h"

namespace vexor {

#define VEXOR_OP(X, TEXT, SIGNATURE, FAMILY)                                                                 \
    class X##_decl : public const_decl {                                                                     \
        VEXOR_AST_CLASS(#X "_decl");                                                                         \
                                                                                                             \
    public:                                                                                                  \
        using const_decl::const_decl;                                                                        \
        static constexpr char const* m_op_name = TEXT;                                                       \
        static constexpr op_signature m_signature = op_signature::SIGNATURE;                                 \
        bool is_builtin() const override { return true; }                                                    \
        shared_ptr<name_expr> create_name_expr(int pos) override;                                            \
    };
#include "ast/node/builtin_ops.def"

#define VEXOR_BUILTIN_TYPE(X)                                                                                \
    class X##_decl : public type_decl {                                                                      \
        VEXOR_AST_CLASS(#X "_decl");                                                                         \
                                                                                                             \
    public:                                                                                                  \
        using type_decl::type_decl;                                                                          \
        bool is_builtin() const override { return true; }                                                    \
        shared_ptr<type_name> create_type_name(int pos) override;                                            \
    };
#include "ast/node/builtin_types.def"

} // namespace vexor
