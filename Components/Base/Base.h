// Every public header of libBase.
#pragma once

#include <Base/String/CharacterClass.h>
#include <Base/String/Encoding.h>
#include <Base/Utility/Api.h>
#include <Base/Utility/Format.h>
