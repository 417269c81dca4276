#ifndef QELT_EVALG_GRAPHDOMAINSERVICENAMES_H
#define QELT_EVALG_GRAPHDOMAINSERVICENAMES_H

// Names of the graph-domain service and of its events, shared with the
// application's graphing view. The evaluators carry them but do not use them.
inline constexpr char16_t GRAPH_DOMAIN_SERVICE[] = u"GRAPH_DOMAIN_SERVICE";
inline constexpr char16_t GRAPH_DOMAIN_EVENT[] = u"GRAPH_DOMAIN_EVENT";
inline constexpr char16_t XMIN_EVENT_IN[] = u"XMIN_EVENT_IN";
inline constexpr char16_t XMAX_EVENT_IN[] = u"XMAX_EVENT_IN";
inline constexpr char16_t YMIN_EVENT_IN[] = u"YMIN_EVENT_IN";
inline constexpr char16_t YMAX_EVENT_IN[] = u"YMAX_EVENT_IN";
inline constexpr char16_t XMIN_EVENT_OUT[] = u"XMIN_EVENT_OUT";
inline constexpr char16_t XMAX_EVENT_OUT[] = u"XMAX_EVENT_OUT";
inline constexpr char16_t YMIN_EVENT_OUT[] = u"YMIN_EVENT_OUT";
inline constexpr char16_t YMAX_EVENT_OUT[] = u"YMAX_EVENT_OUT";

#endif
