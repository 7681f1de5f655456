// Every public header of libBase.
#pragma once

#include <Base/Containers/Pair.h>
#include <Base/String/CString.h>
#include <Base/String/CharacterClass.h>
#include <Base/String/Encoding.h>
#include <Base/String/IString.h>
#include <Base/String/String.h>
#include <Base/Utility/Api.h>
#include <Base/Utility/Error.h>
#include <Base/Utility/Format.h>
