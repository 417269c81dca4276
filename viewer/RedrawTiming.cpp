// Times the binding's redraw natively, for comparison with the page:
//   redraw_timing XMIN XMAX YMIN YMAX COLUMNS ROWS RELATION...
// prints, per relation, one line: nanoseconds per redraw, point count, text.
#include <chrono>
#include <cstdio>
#include <cstdlib>

#include "viewer/Binding.h"

int main(int argc, char **argv) {
    if (argc < 8) {
        std::fprintf(stderr, "usage: redraw_timing XMIN XMAX YMIN YMAX COLUMNS ROWS RELATION...\n");
        return 2;
    }
    double w[4];
    for (int i = 0; i < 4; ++i) w[i] = std::strtod(argv[1 + i], nullptr);
    int columns = std::atoi(argv[5]), rows = std::atoi(argv[6]);
    using Clock = std::chrono::steady_clock;
    for (int r = 7; r < argc; ++r) {
        if (!evalg_set(0, argv[r])) {
            std::fprintf(stderr, "%s: %s\n", argv[r], evalg_message());
            return 2;
        }
        // Repeat for at least 0.1 s, long enough to be steady on a shared
        // machine; the best of three such runs is reported, as the page does.
        double best = 1e300;
        int count = 0;
        for (int run = 0; run < 3; ++run) {
            long n = 0;
            Clock::time_point start = Clock::now(), now;
            do {
                count = evalg_draw(0, w[0], w[1], w[2], w[3], columns, rows);
                ++n;
                now = Clock::now();
            } while (now - start < std::chrono::milliseconds(100));
            double ns = std::chrono::duration<double, std::nano>(now - start).count() / double(n);
            if (ns < best) best = ns;
        }
        std::printf("%.1f %d %s\n", best, count, argv[r]);
    }
    return 0;
}
