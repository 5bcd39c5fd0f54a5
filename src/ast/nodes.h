// All node classes.
#pragma once

#include "ast/application.h"
#include "ast/binding_expr.h"
#include "ast/builtin_decls.h"
#include "ast/composite_types.h"
#include "ast/data_decls.h"
#include "ast/data_types.h"
#include "ast/literals.h"
#include "ast/name_expr.h"
#include "ast/type.h"
#include "ast/update_expr.h"
