namespace lx {}
