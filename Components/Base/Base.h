// Every public header of libBase.
#pragma once

#include <Base/Containers/BlockAllocator.h>
#include <Base/Containers/Hash.h>
#include <Base/Containers/HashMap.h>
#include <Base/Containers/HashTableImpl.h>
#include <Base/Containers/List.h>
#include <Base/Containers/ListImpl.h>
#include <Base/Containers/Map.h>
#include <Base/Containers/Pair.h>
#include <Base/Containers/RBTreeImpl.h>
#include <Base/Containers/ReferenceCount.h>
#include <Base/Containers/Relocatable.h>
#include <Base/Containers/Vector.h>
#include <Base/Containers/VectorImpl.h>
#include <Base/String/CString.h>
#include <Base/String/CharacterClass.h>
#include <Base/String/Encoding.h>
#include <Base/String/IString.h>
#include <Base/String/String.h>
#include <Base/Utility/Api.h>
#include <Base/Utility/Error.h>
#include <Base/Utility/Format.h>
