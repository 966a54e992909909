target_sources(vorlix_core PRIVATE
  service/ServiceUrl.h service/ServiceUrl.cpp
  service/APIError.h service/APIError.cpp
  service/ServiceJson.h service/ServiceJson.cpp
  service/APIService.h service/APIService.cpp
  service/SessionSync.h service/SessionSync.cpp)
