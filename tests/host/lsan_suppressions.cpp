// carve, which IFC++ meshes with, leaks its CSG collector and its triangulation nodes when a
// boolean operation or a triangulation fails part way (it throws past its own allocations; the
// import goes on without that product's body). Those leaks are carve's, in its uninstrumented
// library; these three entries keep LeakSanitizer to ours.
extern "C" const char* __lsan_default_suppressions() {
    return "leak:carve::csg::makeCollector\n"
           "leak:carve::triangulate::triangulate\n"
           "leak:carve::triangulate::detail::splitAndResume\n";
}
