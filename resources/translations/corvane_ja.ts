<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ja" sourcelanguage="en">
<context>
    <name>Localizable</name>
    <message>
        <source>CPU</source>
        <translation>CPU</translation>
    </message>
    <message>
        <source>GPU</source>
        <translation>GPU</translation>
    </message>
    <message>
        <source>Memory</source>
        <translation>メモリ</translation>
    </message>
    <message>
        <source>Storage</source>
        <translation>ストレージ</translation>
    </message>
    <message>
        <source>Sensors</source>
        <translation>センサー</translation>
    </message>
    <message>
        <source>SSD</source>
        <translation>SSD</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>設定</translation>
    </message>
    <message>
        <source>Quit</source>
        <translation>終了</translation>
    </message>
    <message>
        <source>Battery</source>
        <translation>バッテリー</translation>
    </message>
    <message>
        <source>Ambient</source>
        <translation>周囲</translation>
    </message>
    <message>
        <source>Other</source>
        <translation>その他</translation>
    </message>
    <message>
        <source>System</source>
        <translation>システム</translation>
    </message>
    <message>
        <source>Nominal</source>
        <translation>正常</translation>
    </message>
    <message>
        <source>Elevated</source>
        <translation>やや高い</translation>
    </message>
    <message>
        <source>High</source>
        <translation>高い</translation>
    </message>
    <message>
        <source>Critical</source>
        <translation>危険</translation>
    </message>
    <message>
        <source>Unknown</source>
        <translation>不明</translation>
    </message>
    <message>
        <source>%@ RPM</source>
        <extracomment>A fan speed; %@ is the number of revolutions per minute, already formatted.</extracomment>
        <translation>%@ 回転/分</translation>
    </message>
    <message>
        <source>Software Update</source>
        <translation>ソフトウェア・アップデート</translation>
    </message>
    <message>
        <source>Corvane %1 is available — you have %2</source>
        <translation>Corvane %1 を利用できます（現在のバージョンは %2）</translation>
    </message>
    <message>
        <source>Read the release notes</source>
        <translation>リリースノートを読む</translation>
    </message>
    <message>
        <source>Skip This Version</source>
        <translation>このバージョンをスキップ</translation>
    </message>
    <message>
        <source>Remind Me Later</source>
        <translation>あとで通知</translation>
    </message>
    <message>
        <source>Install and Relaunch</source>
        <translation>インストールして再起動</translation>
    </message>
    <message>
        <source>Downloading Corvane %1…</source>
        <translation>Corvane %1 をダウンロード中…</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>キャンセル</translation>
    </message>
    <message>
        <source>Installing Corvane %1…</source>
        <translation>Corvane %1 をインストール中…</translation>
    </message>
    <message>
        <source>You're up to date</source>
        <translation>最新の状態です</translation>
    </message>
    <message>
        <source>Corvane %1 is the newest version available.</source>
        <translation>Corvane %1 は利用可能な最新バージョンです。</translation>
    </message>
    <message>
        <source>The update could not be completed.</source>
        <translation>アップデートを完了できませんでした。</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>%@ free</source>
        <translation>空き %@</translation>
    </message>
    <message>
        <source>%@ of %@</source>
        <translation>%@ / %@</translation>
    </message>
    <message>
        <source>1 min</source>
        <translation>1分</translation>
    </message>
    <message>
        <source>15 min</source>
        <translation>15分</translation>
    </message>
    <message>
        <source>5 min</source>
        <translation>5分</translation>
    </message>
    <message>
        <source>Active</source>
        <translation>アクティブ</translation>
    </message>
    <message>
        <source>App Memory</source>
        <translation>アプリメモリ</translation>
    </message>
    <message>
        <source>Available</source>
        <translation>空き</translation>
    </message>
    <message>
        <source>BATTERY</source>
        <translation>バッテリー</translation>
    </message>
    <message>
        <source>Cache</source>
        <translation>キャッシュ</translation>
    </message>
    <message>
        <source>Capacity</source>
        <translation>容量</translation>
    </message>
    <message>
        <source>Charge</source>
        <translation>充電残量</translation>
    </message>
    <message>
        <source>Charging</source>
        <translation>充電中</translation>
    </message>
    <message>
        <source>Compressed</source>
        <translation>圧縮</translation>
    </message>
    <message>
        <source>Cores</source>
        <translation>コア</translation>
    </message>
    <message>
        <source>Cycles</source>
        <translation>充放電回数</translation>
    </message>
    <message>
        <source>DISK</source>
        <translation>ディスク</translation>
    </message>
    <message>
        <source>Device</source>
        <translation>デバイス</translation>
    </message>
    <message>
        <source>Discharging</source>
        <translation>放電中</translation>
    </message>
    <message>
        <source>Draw</source>
        <translation>消費電力</translation>
    </message>
    <message>
        <source>FANS</source>
        <translation>ファン</translation>
    </message>
    <message>
        <source>Fan %lld</source>
        <translation>ファン %lld</translation>
    </message>
    <message>
        <source>Fully Charged</source>
        <translation>フル充電</translation>
    </message>
    <message>
        <source>Health</source>
        <translation>状態</translation>
    </message>
    <message>
        <source>Idle</source>
        <translation>アイドル</translation>
    </message>
    <message>
        <source>LOAD AVERAGE</source>
        <translation>平均負荷</translation>
    </message>
    <message>
        <source>MEMORY</source>
        <translation>メモリ</translation>
    </message>
    <message>
        <source>Memory Used</source>
        <translation>使用済みメモリ</translation>
    </message>
    <message>
        <source>Memory in use</source>
        <translation>使用中のメモリ</translation>
    </message>
    <message>
        <source>No readable hwmon, thermal zone or applesmc sensors</source>
        <translation>hwmon、サーマルゾーン、applesmc に読み取れるセンサーがありません</translation>
    </message>
    <message>
        <source>Normal</source>
        <translation>正常</translation>
    </message>
    <message>
        <source>PAGES</source>
        <translation>ページ</translation>
    </message>
    <message>
        <source>POWER</source>
        <translation>電力</translation>
    </message>
    <message>
        <source>PRESSURE</source>
        <translation>プレッシャー</translation>
    </message>
    <message>
        <source>PROCESSES</source>
        <translation>プロセス</translation>
    </message>
    <message>
        <source>Page Ins</source>
        <translation>ページイン</translation>
    </message>
    <message>
        <source>Page Outs</source>
        <translation>ページアウト</translation>
    </message>
    <message>
        <source>Peak %@ of %@ cores</source>
        <translation>ピーク %@ / %@ コア</translation>
    </message>
    <message>
        <source>Power</source>
        <translation>電力</translation>
    </message>
    <message>
        <source>Power Adapter</source>
        <translation>電源アダプタ</translation>
    </message>
    <message>
        <source>Pressure</source>
        <translation>プレッシャー</translation>
    </message>
    <message>
        <source>Read</source>
        <translation>読み込み</translation>
    </message>
    <message>
        <source>Renderer</source>
        <translation>レンダラー</translation>
    </message>
    <message>
        <source>SWAP MEMORY</source>
        <translation>スワップ</translation>
    </message>
    <message>
        <source>Status</source>
        <translation>状況</translation>
    </message>
    <message>
        <source>TEMPERATURES</source>
        <translation>温度</translation>
    </message>
    <message>
        <source>THERMAL STATE</source>
        <translation>熱状態</translation>
    </message>
    <message>
        <source>Temperature</source>
        <translation>温度</translation>
    </message>
    <message>
        <source>Tiler</source>
        <translation>タイラー</translation>
    </message>
    <message>
        <source>Time Left</source>
        <translation>残り時間</translation>
    </message>
    <message>
        <source>USAGE</source>
        <translation>使用率</translation>
    </message>
    <message>
        <source>Unavailable</source>
        <translation>利用不可</translation>
    </message>
    <message>
        <source>Uptime</source>
        <translation>稼働時間</translation>
    </message>
    <message>
        <source>Used</source>
        <translation>使用済み</translation>
    </message>
    <message>
        <source>User</source>
        <translation>ユーザ</translation>
    </message>
    <message>
        <source>Voltage</source>
        <translation>電圧</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>警告</translation>
    </message>
    <message>
        <source>Wired</source>
        <translation>固定</translation>
    </message>
    <message>
        <source>Write</source>
        <translation>書き込み</translation>
    </message>
</context>
</TS>
