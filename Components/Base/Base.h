// Every public header of libBase.
#pragma once

#include <Base/Containers/Pair.h>
#include <Base/Linear/AffineMatrix.h>
#include <Base/Linear/AffineMatrix2.h>
#include <Base/Linear/Components.h>
#include <Base/Linear/Forward.h>
#include <Base/Linear/Homogeneous.h>
#include <Base/Linear/Line.h>
#include <Base/Linear/MatrixCore.h>
#include <Base/Linear/Plane.h>
#include <Base/Linear/ProjMatrix.h>
#include <Base/Linear/Quaternion.h>
#include <Base/Linear/Range.h>
#include <Base/Linear/Tolerance.h>
#include <Base/Linear/Tuple.h>
#include <Base/Linear/Vector.h>
#include <Base/String/CString.h>
#include <Base/String/CharacterClass.h>
#include <Base/String/Encoding.h>
#include <Base/String/IString.h>
#include <Base/String/String.h>
#include <Base/Utility/Api.h>
#include <Base/Utility/Error.h>
#include <Base/Utility/Format.h>
