// Affine products, point transforms, inversion, slerp and decomposition
// against Eigen (Affine3d, Matrix4d, Quaterniond), Imath (M44d, Quatd,
// gjInverse, extractSHRT) and glm (dmat4, dquat, matrix_decompose), on the
// same inputs. libBase's affine matrix is 4×3; the peers store 4×4.
//
// Every case copies its inputs and passes them through DoNotOptimize, so
// that no implementation can hoist or fold the work.
#include "Compare.h"

#include <Base/Linear/AffineMatrix.h>
#include <Base/Linear/Quaternion.h>

#include <benchmark/benchmark.h>

#include <random>
#include <string>
#include <vector>

#if BASE_BENCH_HAVE_EIGEN
#    include <Eigen/Geometry>
#endif
#if BASE_BENCH_HAVE_IMATH
#    include <Imath/ImathMatrix.h>
#    include <Imath/ImathMatrixAlgo.h>
#    include <Imath/ImathQuat.h>
#endif
#if BASE_BENCH_HAVE_GLM
#    define GLM_ENABLE_EXPERIMENTAL
#    include <glm/glm.hpp>
#    include <glm/gtc/matrix_inverse.hpp>
#    include <glm/gtc/quaternion.hpp>
#    include <glm/gtx/matrix_decompose.hpp>
#endif

namespace {

using namespace kxLinear;

template <class Body>
void add(const std::string& name, Body body) {
    benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) mutable {
        for (auto _ : state)
            body();
    });
}

/// One case's inputs in libBase's form; each peer converts them once.
struct Inputs {
    AffineMatrix a;
    AffineMatrix b;
    AffineMatrix singular;
    AffineMatrix decomposable; // with scale, shear, rotation and translation
    Quaternion from;
    Quaternion to;
    std::vector<Point> points;
};

Inputs makeInputs() {
    std::mt19937 random(11);
    std::uniform_real_distribution<double> coordinate(-10, 10);
    Inputs in;
    in.a = AffineMatrix(1.0).translate(1, -2, 3).rotate(0.7, Normal(1, 2, 3)).scale(1.5, 0.8, 2);
    in.b = AffineMatrix(1.0).translate(-4, 0.5, 2).rotate(-1.1, Normal(-2, 1, 0.5)).scale(0.9);
    in.singular = in.a;
    for (int c = 0; c < 3; ++c)
        in.singular(2, c) = in.singular(0, c) + in.singular(1, c);
    AffineMatrix shear(1.0);
    shear(1, 0) = 0.3;
    shear(2, 1) = -0.2;
    in.decomposable = shear * in.a;
    in.from = Quaternion(0.4, Normal(1, 0, 1));
    in.to = Quaternion(1.4, Normal(0, 1, 2));
    for (int i = 0; i < 1000; ++i)
        in.points.emplace_back(coordinate(random), coordinate(random), coordinate(random));
    return in;
}

void registerOurs(const Inputs& in) {
    const char* ours = bench::kOurs;
    add(std::string("affine product/") + ours, [a = in.a, b = in.b]() mutable {
        benchmark::DoNotOptimize(a);
        benchmark::DoNotOptimize(b);
        AffineMatrix c = a * b;
        benchmark::DoNotOptimize(c);
    });
    add(std::string("transform 1000 points/") + ours,
        [m = in.a, points = in.points, out = in.points]() mutable {
            benchmark::DoNotOptimize(m);
            for (std::size_t i = 0; i < points.size(); ++i)
                out[i] = points[i] * m;
            benchmark::DoNotOptimize(out.data());
            benchmark::ClobberMemory();
        });
    add(std::string("invert/") + ours, [m = in.a]() mutable {
        AffineMatrix r = m;
        benchmark::DoNotOptimize(r);
        benchmark::DoNotOptimize(r.invert());
        benchmark::DoNotOptimize(r);
    });
    add(std::string("invert singular/") + ours, [m = in.singular]() mutable {
        AffineMatrix r = m;
        benchmark::DoNotOptimize(r);
        benchmark::DoNotOptimize(r.invert());
        benchmark::DoNotOptimize(r);
    });
    add(std::string("invertFast/") + ours, [m = in.a]() mutable {
        AffineMatrix r = m;
        benchmark::DoNotOptimize(r);
        benchmark::DoNotOptimize(r.invertFast());
        benchmark::DoNotOptimize(r);
    });
    add(std::string("slerp/") + ours, [a = in.from, b = in.to]() mutable {
        benchmark::DoNotOptimize(a);
        benchmark::DoNotOptimize(b);
        Quaternion q = slerp(a, b, 0.3);
        benchmark::DoNotOptimize(q);
    });
    add(std::string("decompose/") + ours, [m = in.decomposable]() mutable {
        benchmark::DoNotOptimize(m);
        Point t;
        Vector s, r, h;
        benchmark::DoNotOptimize(forgeDecompose(m, t, s, r, h));
        benchmark::DoNotOptimize(t);
        benchmark::DoNotOptimize(s);
        benchmark::DoNotOptimize(r);
        benchmark::DoNotOptimize(h);
    });
}

#if BASE_BENCH_HAVE_EIGEN
// Eigen multiplies column vectors: its matrix is libBase's transposed.
Eigen::Affine3d toEigen(const AffineMatrix& m) {
    Eigen::Affine3d e = Eigen::Affine3d::Identity();
    for (int r = 0; r < 4; ++r) {
        for (int c = 0; c < 3; ++c)
            e.matrix()(c, r) = m(r, c);
    }
    return e;
}

Eigen::Quaterniond toEigen(const Quaternion& q) {
    return Eigen::Quaterniond(q[3], q[0], q[1], q[2]);
}

void registerEigen(const Inputs& in) {
    add("affine product/Eigen", [a = toEigen(in.a), b = toEigen(in.b)]() mutable {
        benchmark::DoNotOptimize(a);
        benchmark::DoNotOptimize(b);
        Eigen::Affine3d c = b * a; // a first, as in libBase's a * b
        benchmark::DoNotOptimize(c);
    });
    std::vector<Eigen::Vector3d> points;
    for (const Point& p : in.points)
        points.emplace_back(p[0], p[1], p[2]);
    add("transform 1000 points/Eigen", [m = toEigen(in.a), points, out = points]() mutable {
        benchmark::DoNotOptimize(m);
        for (std::size_t i = 0; i < points.size(); ++i)
            out[i] = m * points[i];
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    });
    add("invert/Eigen Matrix4d", [m = Eigen::Matrix4d(toEigen(in.a).matrix())]() mutable {
        benchmark::DoNotOptimize(m);
        Eigen::Matrix4d r = m.inverse();
        benchmark::DoNotOptimize(r);
    });
    add("invertFast/Eigen Affine3d", [m = toEigen(in.a)]() mutable {
        benchmark::DoNotOptimize(m);
        Eigen::Affine3d r = m.inverse();
        benchmark::DoNotOptimize(r);
    });
    add("slerp/Eigen", [a = toEigen(in.from), b = toEigen(in.to)]() mutable {
        benchmark::DoNotOptimize(a);
        benchmark::DoNotOptimize(b);
        Eigen::Quaterniond q = a.slerp(0.3, b);
        benchmark::DoNotOptimize(q);
    });
}
#endif

#if BASE_BENCH_HAVE_IMATH
// Imath multiplies row vectors, as libBase does.
Imath::M44d toImath(const AffineMatrix& m) {
    Imath::M44d r;
    for (int i = 0; i < 4; ++i) {
        for (int c = 0; c < 3; ++c)
            r[i][c] = m(i, c);
        r[i][3] = i == 3 ? 1 : 0;
    }
    return r;
}

void registerImath(const Inputs& in) {
    add("affine product/Imath", [a = toImath(in.a), b = toImath(in.b)]() mutable {
        benchmark::DoNotOptimize(a);
        benchmark::DoNotOptimize(b);
        Imath::M44d c = a * b;
        benchmark::DoNotOptimize(c);
    });
    std::vector<Imath::V3d> points;
    for (const Point& p : in.points)
        points.emplace_back(p[0], p[1], p[2]);
    add("transform 1000 points/Imath", [m = toImath(in.a), points, out = points]() mutable {
        benchmark::DoNotOptimize(m);
        for (std::size_t i = 0; i < points.size(); ++i)
            m.multVecMatrix(points[i], out[i]);
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    });
    add("invert/Imath gjInverse", [m = toImath(in.a)]() mutable {
        benchmark::DoNotOptimize(m);
        Imath::M44d r = m.gjInverse();
        benchmark::DoNotOptimize(r);
    });
    add("invert singular/Imath gjInverse", [m = toImath(in.singular)]() mutable {
        benchmark::DoNotOptimize(m);
        Imath::M44d r = m.gjInverse();
        benchmark::DoNotOptimize(r);
    });
    add("invertFast/Imath inverse", [m = toImath(in.a)]() mutable {
        benchmark::DoNotOptimize(m);
        Imath::M44d r = m.inverse();
        benchmark::DoNotOptimize(r);
    });
    const auto quat = [](const Quaternion& q) { return Imath::Quatd(q[3], q[0], q[1], q[2]); };
    add("slerp/Imath", [a = quat(in.from), b = quat(in.to)]() mutable {
        benchmark::DoNotOptimize(a);
        benchmark::DoNotOptimize(b);
        Imath::Quatd q = Imath::slerpShortestArc(a, b, 0.3);
        benchmark::DoNotOptimize(q);
    });
    add("decompose/Imath extractSHRT", [m = toImath(in.decomposable)]() mutable {
        benchmark::DoNotOptimize(m);
        Imath::V3d s, h, r, t;
        benchmark::DoNotOptimize(Imath::extractSHRT(m, s, h, r, t, false));
        benchmark::DoNotOptimize(s);
        benchmark::DoNotOptimize(h);
        benchmark::DoNotOptimize(r);
        benchmark::DoNotOptimize(t);
    });
}
#endif

#if BASE_BENCH_HAVE_GLM
// glm multiplies column vectors and stores by columns: the same memory
// order as libBase's rows.
glm::dmat4 toGlm(const AffineMatrix& m) {
    glm::dmat4 g(1.0);
    for (int r = 0; r < 4; ++r) {
        for (int c = 0; c < 3; ++c)
            g[r][c] = m(r, c);
    }
    return g;
}

void registerGlm(const Inputs& in) {
    add("affine product/glm", [a = toGlm(in.a), b = toGlm(in.b)]() mutable {
        benchmark::DoNotOptimize(a);
        benchmark::DoNotOptimize(b);
        glm::dmat4 c = b * a;
        benchmark::DoNotOptimize(c);
    });
    std::vector<glm::dvec3> points;
    for (const Point& p : in.points)
        points.emplace_back(p[0], p[1], p[2]);
    add("transform 1000 points/glm", [m = toGlm(in.a), points, out = points]() mutable {
        benchmark::DoNotOptimize(m);
        for (std::size_t i = 0; i < points.size(); ++i)
            out[i] = glm::dvec3(m * glm::dvec4(points[i], 1.0));
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    });
    add("invert/glm", [m = toGlm(in.a)]() mutable {
        benchmark::DoNotOptimize(m);
        glm::dmat4 r = glm::inverse(m);
        benchmark::DoNotOptimize(r);
    });
    add("invertFast/glm affineInverse", [m = toGlm(in.a)]() mutable {
        benchmark::DoNotOptimize(m);
        glm::dmat4 r = glm::affineInverse(m);
        benchmark::DoNotOptimize(r);
    });
    const auto quat = [](const Quaternion& q) { return glm::dquat(q[3], q[0], q[1], q[2]); };
    add("slerp/glm", [a = quat(in.from), b = quat(in.to)]() mutable {
        benchmark::DoNotOptimize(a);
        benchmark::DoNotOptimize(b);
        glm::dquat q = glm::slerp(a, b, 0.3);
        benchmark::DoNotOptimize(q);
    });
    add("decompose/glm", [m = toGlm(in.decomposable)]() mutable {
        benchmark::DoNotOptimize(m);
        glm::dvec3 s, t, skew;
        glm::dquat r;
        glm::dvec4 perspective;
        benchmark::DoNotOptimize(glm::decompose(m, s, r, t, skew, perspective));
        benchmark::DoNotOptimize(s);
        benchmark::DoNotOptimize(r);
        benchmark::DoNotOptimize(t);
        benchmark::DoNotOptimize(skew);
    });
}
#endif

} // namespace

int main(int argc, char** argv) {
    const Inputs inputs = makeInputs();
    registerOurs(inputs);
#if BASE_BENCH_HAVE_EIGEN
    registerEigen(inputs);
#endif
#if BASE_BENCH_HAVE_IMATH
    registerImath(inputs);
#endif
#if BASE_BENCH_HAVE_GLM
    registerGlm(inputs);
#endif
    return bench::runAndCompare(argc, argv);
}
