// All node classes.
#pragma once

#include "ast/node/application.h"
#include "ast/node/binding_expr.h"
#include "ast/node/builtin_decls.h"
#include "ast/node/composite_types.h"
#include "ast/node/data_decls.h"
#include "ast/node/data_types.h"
#include "ast/node/literals.h"
#include "ast/node/name_expr.h"
#include "ast/node/type.h"
#include "ast/node/update_expr.h"
