#include "BenchGLContext.h"

#include <DisplayList.h>
#include <GLCallRecorder.h>
#include <GLStateManager.h>
#include <RenderItemBuilder.h>
#include <RenderState.h>
#include <Renderer.h>
#include <ShaderCache.h>
#include <TextureCache.h>
#include <TextureKeyDataCached.h>

#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <benchmark/benchmark.h>
#include <list>
#include <memory>
#include <random>
#include <unordered_map>

using namespace gfx;

namespace {

const QSize kScreen = BenchGLContext::kScreen;

TextureKey patternKey(int w, int h, int seed, bool alpha)
{
    return TextureCache::instance()->addOrLookup(BenchGLContext::pattern(w, h, seed, alpha));
}

// The display's usual picture: an opaque background, a panel, a list of 50 rows
// (row background, icon, two lines of text from one atlas, a separator) and a
// translucent overlay.
struct Scene
{
    Scene() : background(patternKey(64, 64, 1, false)), atlas(patternKey(256, 64, 2, true))
    {
        for (int i = 0; i < 5; ++i)
            icons << patternKey(48, 48, 3 + i, true);
    }

    void build(RenderItemBuilder& builder) const
    {
        builder.reserve(300);
        builder.drawTexturedRect(QRect(QPoint(0, 0), kScreen), background, false);
        builder.drawColoredRect(QRect(40, 0, 1200, 800), QColor(40, 44, 52));
        for (int row = 0; row < 50; ++row) {
            const int y = row * 16;
            builder.drawColoredRect(QRect(40, y, 1200, 15),
                                    row % 2 ? QColor(50, 54, 62) : QColor(46, 50, 58));
            builder.drawTexturedRect(QRect(48, y + 1, 14, 14), icons[row % icons.size()], true);
            builder.drawTexturedRect(QRect(70, y + 2, 300, 12), atlas, true);
            builder.drawTexturedRect(QRect(900, y + 2, 200, 12), atlas, true);
            builder.drawColoredRect(QRect(40, y + 15, 1200, 1), QColor(70, 74, 82));
        }
        builder.drawColoredRect(QRect(0, 700, 1280, 100), QColor(0, 0, 0, 96));
    }

    TextureKey background;
    TextureKey atlas;
    QVector<TextureKey> icons;
};

int liveItems(const QVector<RenderItem*>& items)
{
    return int(std::count_if(items.begin(), items.end(), [](RenderItem* i) { return i != nullptr; }));
}

void BM_RendererOptimize(benchmark::State& state)
{
    Scene scene;
    int before = 0, after = 0;
    for (auto _ : state) {
        RenderItemBuilder builder;
        scene.build(builder);
        QVector<RenderItem*> items = builder.takeItems();
        before = items.size();
        optimize(items, true);
        after = liveItems(items);
        qDeleteAll(items);
    }
    state.counters["items_before"] = before;
    state.counters["items_after"] = after;
}
BENCHMARK(BM_RendererOptimize)->Unit(benchmark::kMicrosecond);

constexpr int kCacheEntries = 10000;

std::vector<int> accessPattern()
{
    std::mt19937 random(11);
    std::vector<int> order(1 << 16);
    for (int& i : order)
        i = int(random() % kCacheEntries);
    return order;
}

void BM_TextureCacheBind(benchmark::State& state)
{
    GLCallRecorder driver;
    GLFunctions* previous = GLFunctions::install(&driver);
    GLStateManager::instance()->clearToInvalid();
    Singleton<TextureCache>::reset();
    TextureCache* cache = TextureCache::instance();
    QVector<TextureKey> keys;
    for (int i = 0; i < kCacheEntries; ++i) {
        QImage image(1, 1, QImage::Format_ARGB32_Premultiplied);
        image.fill(QColor(i & 255, 0, 0));
        keys << cache->addOrLookup(image);
        // Separate key objects for the same pixels, as views create them per paint.
        cache->bind(keys.last());
        keys.last() = cache->addOrLookup(image);
    }
    const std::vector<int> order = accessPattern();
    size_t next = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(cache->bind(keys[order[next]]));
        next = (next + 1) & (order.size() - 1);
    }
    state.counters["entries"] = double(cache->entryCount());
    keys.clear();
    Singleton<TextureCache>::reset();
    GLFunctions::install(previous);
    GLStateManager::instance()->clearToInvalid();
}
BENCHMARK(BM_TextureCacheBind);

// The textbook LRU store: a hash map of list positions.
void BM_TextureCacheBindBaseline(benchmark::State& state)
{
    GLCallRecorder driver;
    GLFunctions* previous = GLFunctions::install(&driver);
    GLStateManager* gl = GLStateManager::instance();
    gl->clearToInvalid();
    using Entry = std::pair<unsigned long, std::shared_ptr<TextureCache::TextureEntry>>;
    std::list<Entry> lru;
    std::unordered_map<unsigned long, std::list<Entry>::iterator> index;
    std::vector<unsigned long> keys;
    for (int i = 0; i < kCacheEntries; ++i) {
        QImage image(1, 1, QImage::Format_ARGB32_Premultiplied);
        keys.push_back(quint64(image.cacheKey()));
        auto entry = std::make_shared<TextureCache::TextureEntry>();
        entry->mTextureID = GLuint(i + 1);
        lru.emplace_front(keys.back(), entry);
        index[keys.back()] = lru.begin();
    }
    const std::vector<int> order = accessPattern();
    size_t next = 0;
    for (auto _ : state) {
        auto it = index.find(keys[order[next]]);
        lru.splice(lru.begin(), lru, it->second);
        gl->glBindTexture2D(it->second->second->mTextureID);
        next = (next + 1) & (order.size() - 1);
    }
    for (Entry& e : lru)
        e.second->mTextureID = 0;
    GLFunctions::install(previous);
    gl->clearToInvalid();
}
BENCHMARK(BM_TextureCacheBindBaseline);

// The stores alone, without the thread check and the bind.
void BM_LruStoreFind(benchmark::State& state)
{
    const bool sortedVector = state.range(0) != 0;
    TLRUCache<unsigned long, int> store;
    std::list<std::pair<unsigned long, int>> lru;
    std::unordered_map<unsigned long, std::list<std::pair<unsigned long, int>>::iterator> index;
    std::vector<unsigned long> keys;
    std::mt19937_64 random(5);
    for (int i = 0; i < kCacheEntries; ++i) {
        keys.push_back(random());
        store.insert(keys.back(), i);
        lru.emplace_front(keys.back(), i);
        index[keys.back()] = lru.begin();
    }
    const std::vector<int> order = accessPattern();
    size_t next = 0;
    for (auto _ : state) {
        const unsigned long key = keys[order[next]];
        if (sortedVector) {
            benchmark::DoNotOptimize(store.find(key));
        } else {
            auto it = index.find(key);
            lru.splice(lru.begin(), lru, it->second);
            benchmark::DoNotOptimize(it->second->second);
        }
        next = (next + 1) & (order.size() - 1);
    }
}
BENCHMARK(BM_LruStoreFind)->Arg(0)->Arg(1);

// One frame drawn and finished: with the optimiser (arg 1) or as built (arg 0).
// Last in the file: llvmpipe's worker threads would disturb the benchmarks after it.
void BM_RendererFrame(benchmark::State& state)
{
    BenchGLContext* context = BenchGLContext::get();
    if (!context) {
        state.SkipWithError("no GL context");
        return;
    }
    context->begin();
    const bool optimise = state.range(0) != 0;
    Scene scene;
    GLCallRecorder driver(GLFunctions::current());
    GLFunctions* previous = GLFunctions::install(&driver);
    GLStateManager* gl = GLStateManager::instance();
    gl->clearToInvalid();
    const RenderState renderState(kScreen);
    quint64 requests = 0, forwarded = 0;
    int frames = 0;
    driver.reset();
    for (auto _ : state) {
        RenderItemBuilder builder;
        scene.build(builder);
        auto list = builder.createDisplayList(true);
        const quint64 r0 = gl->requests(), f0 = gl->forwarded();
        if (optimise) {
            list->optimize();
            list->render(renderState);
        } else {
            render(renderState, list.data());
        }
        requests += gl->requests() - r0;
        forwarded += gl->forwarded() - f0;
        context->finish();
        ++frames;
    }
    // Issued: every cached request plus the calls that bypass the cache.
    const double reaching = double(driver.totalCalls()) / frames;
    const double bypassing = reaching - double(forwarded) / frames;
    state.counters["draw_calls"] = double(driver.count("glDrawArrays")) / frames;
    state.counters["gl_issued"] = bypassing + double(requests) / frames;
    state.counters["gl_to_driver"] = reaching;
    GLFunctions::install(previous);
    gl->clearToInvalid();
}
BENCHMARK(BM_RendererFrame)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->MinTime(2.0);

} // namespace
