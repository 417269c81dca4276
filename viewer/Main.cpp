// The module has no program of its own: the page calls the binding's
// functions (Binding.h) once the module is loaded.
int main() { return 0; }
